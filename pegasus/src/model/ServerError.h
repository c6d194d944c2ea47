#pragma once

#include <Pegasus/Common/Exception.h>

#include <string>
#include <string_view>

namespace Pegasus {
inline namespace bundled {
namespace detail {

/// Whether a server's description of an error is more than the name of its code, and not empty.
inline bool saysMoreThan(std::string_view codeName, std::string_view description) noexcept {
    if (description.substr(0, codeName.size()) == codeName) {
        description.remove_prefix(codeName.size());
    }
    return description.find_first_not_of(" \t\r\n:") != std::string_view::npos;
}

/// The exception for a status other than success that a server reports. A number that is no status code becomes
/// CIM_ERR_FAILED, with the number in the message. Where the server gives no description, or no more than the name of
/// the code, the message says so.
inline CIMException serverError(Uint32 code, const String& description) {
    const auto status = static_cast<CIMStatusCode>(code);
    const char* const name = cimStatusCodeToString(status);
    const bool hasText = saysMoreThan(name ? name : "", description.view());
    const String text = hasText ? description : String("the server says no more than this");
    if (name) {
        return CIMException(status, text);
    }
    return CIMException(CIM_ERR_FAILED, String("unknown status code " + std::to_string(code) + ": ") + text);
}

} // namespace detail
} // namespace bundled
} // namespace Pegasus
