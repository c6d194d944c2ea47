#pragma once

#include <cstddef>

/// What an answer may take from this process, in addition to the limits of its XML (xml/XmlLimits.h). Where it takes
/// more, the decoder throws a CIMClientXmlException that is an ExceedsLimit, too, and says which limit it is.
namespace Pegasus::cimxml {

/// The most bytes in the text of one object of the return value.
constexpr std::size_t kMaxObjectBytes = std::size_t{64} << 20U;
/// How many times as long as its element the text form of a reference may be. It is usually shorter, but each reference
/// within a reference doubles the number of escapes.
constexpr std::size_t kMaxReferenceGrowth = 8;
/// The most bytes that the text form of a reference may have.
constexpr std::size_t kMaxReferenceBytes = std::size_t{16} << 20U;
/// Levels of references within the keys of references; bounds the stack that they take.
constexpr std::size_t kMaxReferenceNesting = 16;
/// Levels of embedded objects within embedded objects.
constexpr std::size_t kMaxEmbedding = 8;
/// Names that a decoder keeps to share them between objects.
constexpr std::size_t kMaxCachedNames = 1024;
/// Bytes of text of the qualifiers that a decoder keeps to share them between objects.
constexpr std::size_t kMaxCachedQualifierBytes = std::size_t{1} << 20U;
/// The longest qualifier that is kept, in bytes: looking for a qualifier reads no more text than that.
constexpr std::size_t kLongestCachedQualifier = std::size_t{8} << 10U;

} // namespace Pegasus::cimxml
