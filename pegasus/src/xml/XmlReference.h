#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Pegasus::xml {

/// The length of "&#1114111;". Longer ones are not accepted.
constexpr std::size_t kLongestReference = 10;

/// The character that a reference stands for, given with its '&' and ';': one of XML's five entities, or a character in
/// base 10 or 16, which need not be an accepted one. Throws DecodingError for every other text.
std::uint32_t characterOf(std::string_view reference);

} // namespace Pegasus::xml
