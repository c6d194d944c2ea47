#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace cimhttp {

/// A printable name such as `FileSystemSize` as lines of at most `width` columns, broken between the words that it
/// consists of; a word that is too long is broken anywhere. At least one line.
std::vector<std::string> WrappedName(std::string_view name, std::size_t width);

/// The least width in which a name is folded to two lines at most, and no word broken.
std::size_t WidthOfTwoLines(std::string_view name);

} // namespace cimhttp
