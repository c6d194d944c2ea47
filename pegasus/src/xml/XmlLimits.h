#pragma once

#include <cstddef>

/// What a text may take from this process. Where it takes more, a reader throws a DecodingError of the kind Limit.
namespace Pegasus::xml {

/// Levels of elements within elements.
constexpr std::size_t kMaxNesting = 256;
/// Elements, attributes, comments and the like of one text; bounds the memory of what they become.
constexpr std::size_t kMaxNodes = std::size_t{2} << 20U;
/// Attributes of one element.
constexpr std::size_t kMaxAttributes = 32;
/// Start tags that a cache keeps, and how long they may be.
constexpr std::size_t kMaxCachedTags = 1024;
constexpr std::size_t kMaxCachedTagBytes = 512;
/// How much of a text is read between two checkpoints.
constexpr std::size_t kBytesBetweenCheckpoints = std::size_t{64} << 10U;

} // namespace Pegasus::xml
