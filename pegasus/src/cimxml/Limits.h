#pragma once

#include <cstddef>

/// What an answer may ask of this process, beside the limits of its XML (xml/XmlLimits.h). Where it asks for more, the
/// decoder throws a CIMClientXmlException that is an ExceedsLimit, too, and says which limit it is.
namespace Pegasus::cimxml {

/// The text of one object of the return value.
constexpr std::size_t kMaxObjectBytes = std::size_t{64} << 20U;
/// How many times as long as its element the text form of a reference may be. It is shorter, as a rule, but each
/// reference within a reference doubles the number of escapes.
constexpr std::size_t kMaxReferenceGrowth = 8;
/// The text form of a reference, in any case.
constexpr std::size_t kMaxReferenceBytes = std::size_t{16} << 20U;
/// References within the keys of references; bounds the stack that they take.
constexpr std::size_t kMaxReferenceNesting = 16;
/// Embedded objects within embedded objects.
constexpr std::size_t kMaxEmbedding = 8;
/// Names that a decoder keeps to share them between objects.
constexpr std::size_t kMaxCachedNames = 1024;
/// The text of the qualifiers that a decoder keeps to share them between objects.
constexpr std::size_t kMaxCachedQualifierBytes = std::size_t{1} << 20U;
/// The longest of them; no qualifier costs more than to look through so much text.
constexpr std::size_t kLongestCachedQualifier = std::size_t{8} << 10U;

} // namespace Pegasus::cimxml
