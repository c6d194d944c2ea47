#pragma once

#include <cstddef>

/// What an answer may ask of this process. Past one of these the decoder throws CIMClientXmlException that is an
/// ExceedsLimit, too, and says which.
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
/// Elements within elements, in one object.
constexpr std::size_t kMaxNesting = 256;
/// Elements, attributes, comments and the like of one object; bounds the memory of what they become.
constexpr std::size_t kMaxNodes = std::size_t{2} << 20U;
/// Attributes of one element; CIM-XML has none with more than eleven.
constexpr std::size_t kMaxAttributes = 32;
/// Embedded objects within embedded objects.
constexpr std::size_t kMaxEmbedding = 8;
/// Names that a decoder remembers to share them between objects.
constexpr std::size_t kMaxSharedNames = 1024;
/// Start tags that a decoder remembers to know them again, and how long they may be.
constexpr std::size_t kMaxRememberedTags = 1024;
constexpr std::size_t kMaxRememberedTagBytes = 512;
/// The text of the qualifiers that a decoder remembers to share them between objects.
constexpr std::size_t kMaxRememberedQualifierBytes = std::size_t{1} << 20U;
/// The longest of them; no qualifier costs more than to look through so much text.
constexpr std::size_t kLongestRememberedQualifier = std::size_t{8} << 10U;
/// How much of a text is read between two looks at the clock.
constexpr std::size_t kBytesBetweenCheckpoints = std::size_t{64} << 10U;

} // namespace Pegasus::cimxml
