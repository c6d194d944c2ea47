#pragma once

#include <string>
#include <string_view>

namespace Pegasus::http {

/// Text with every byte but letters, digits and "-._~" as %XX (RFC 3986, 2.1).
std::string percentEncoded(std::string_view text);

/// Text with every %XX as its byte. A '%' without two hexadecimal digits after it stands for itself.
std::string percentDecoded(std::string_view text);

} // namespace Pegasus::http
