#pragma once

#include <string>
#include <string_view>

namespace demo {

/// Text for a header: everything but letters, digits and -._~ as %XX (RFC 3986).
std::string PercentEncode(std::string_view text);

/// The text that PercentEncode() was given. A % without two hexadecimal digits stands for itself.
std::string PercentDecode(std::string_view text);

} // namespace demo
