#pragma once

#include <Pegasus/Common/Exception.h>

#include <string>

namespace Pegasus::detail {

/// The exception for a status other than success that a server reports. A number that is none of the status codes
/// becomes CIM_ERR_FAILED, with the number in the message.
inline CIMException serverError(Uint32 code, const String& description) {
    const auto status = static_cast<CIMStatusCode>(code);
    if (cimStatusCodeToString(status))
        return CIMException(status, description);
    return CIMException(CIM_ERR_FAILED, String("unknown status code " + std::to_string(code) + ": ") + description);
}

} // namespace Pegasus::detail
