#pragma once

#include <Pegasus/Common/Config.h>

namespace Pegasus {
inline namespace bundled {

/// The status codes of CIM operations (DSP0200 1.4, status codes). A server's number that is none of them is reported
/// as CIM_ERR_FAILED.
enum CIMStatusCode : Uint32 {
    CIM_ERR_SUCCESS = 0,
    CIM_ERR_FAILED = 1,
    CIM_ERR_ACCESS_DENIED = 2,
    CIM_ERR_INVALID_NAMESPACE = 3,
    CIM_ERR_INVALID_PARAMETER = 4,
    CIM_ERR_INVALID_CLASS = 5,
    CIM_ERR_NOT_FOUND = 6,
    CIM_ERR_NOT_SUPPORTED = 7,
    CIM_ERR_CLASS_HAS_CHILDREN = 8,
    CIM_ERR_CLASS_HAS_INSTANCES = 9,
    CIM_ERR_INVALID_SUPERCLASS = 10,
    CIM_ERR_ALREADY_EXISTS = 11,
    CIM_ERR_NO_SUCH_PROPERTY = 12,
    CIM_ERR_TYPE_MISMATCH = 13,
    CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED = 14,
    CIM_ERR_INVALID_QUERY = 15,
    CIM_ERR_METHOD_NOT_AVAILABLE = 16,
    CIM_ERR_METHOD_NOT_FOUND = 17,
    CIM_ERR_NAMESPACE_NOT_EMPTY = 20,
    CIM_ERR_INVALID_ENUMERATION_CONTEXT = 21,
    CIM_ERR_INVALID_OPERATION_TIMEOUT = 22,
    CIM_ERR_PULL_HAS_BEEN_ABANDONED = 23,
    CIM_ERR_PULL_CANNOT_BE_ABANDONED = 24,
    CIM_ERR_FILTERED_ENUMERATION_NOT_SUPPORTED = 25,
    CIM_ERR_CONTINUATION_ON_ERROR_NOT_SUPPORTED = 26,
    CIM_ERR_SERVER_LIMITS_EXCEEDED = 27,
    CIM_ERR_SERVER_IS_SHUTTING_DOWN = 28
};

/// The code's name, for example "CIM_ERR_NOT_FOUND"; null for a number without a name.
const char* cimStatusCodeToString(CIMStatusCode code) noexcept;

} // namespace bundled
} // namespace Pegasus
