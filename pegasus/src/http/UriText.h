#pragma once

#include <string>
#include <string_view>

namespace Pegasus::http {

/// Text with every byte but letters, digits and "-._~" as %XX: how CIM headers carry names (DSP0200).
std::string encodeUri(std::string_view text);

/// The reverse. A '%' without two hexadecimal digits behind it stands for itself.
std::string decodeUri(std::string_view text);

} // namespace Pegasus::http
