#pragma once

#include <string>
#include <string_view>

namespace Pegasus {
inline namespace bundled {
namespace detail {

/// A text of UTF-8 as UTF-16 units. Bytes that are no UTF-8 become one unit U+FFFD each.
std::u16string utf16Of(std::string_view utf8);

/// UTF-16 units as a text of UTF-8. Half of a surrogate pair becomes U+FFFD.
std::string utf8Of(std::u16string_view units);

} // namespace detail
} // namespace bundled
} // namespace Pegasus
