#pragma once

#include <Pegasus/Common/Exception.h>

#include <string>

namespace Pegasus::detail {

/// The exception for a status other than success that a server reports. A number that is none of the status codes
/// becomes CIM_ERR_FAILED, with the number in the message. Where the server gives no description, the message says so.
inline CIMException serverError(Uint32 code, const String& description) {
    const auto status = static_cast<CIMStatusCode>(code);
    const String text = description.empty() ? String("the server says no more than this") : description;
    if (cimStatusCodeToString(status))
        return CIMException(status, text);
    return CIMException(CIM_ERR_FAILED, String("unknown status code " + std::to_string(code) + ": ") + text);
}

} // namespace Pegasus::detail
