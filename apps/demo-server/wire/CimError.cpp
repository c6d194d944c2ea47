#include "wire/CimError.h"

namespace demo {

namespace {

std::string_view SymbolicName(CimStatus status) {
    switch (status) {
    case CimStatus::kFailed:
        return "CIM_ERR_FAILED";
    case CimStatus::kInvalidNamespace:
        return "CIM_ERR_INVALID_NAMESPACE";
    case CimStatus::kInvalidParameter:
        return "CIM_ERR_INVALID_PARAMETER";
    case CimStatus::kInvalidClass:
        return "CIM_ERR_INVALID_CLASS";
    case CimStatus::kNotFound:
        return "CIM_ERR_NOT_FOUND";
    case CimStatus::kNotSupported:
        return "CIM_ERR_NOT_SUPPORTED";
    case CimStatus::kNoSuchProperty:
        return "CIM_ERR_NO_SUCH_PROPERTY";
    case CimStatus::kInvalidEnumerationContext:
        return "CIM_ERR_INVALID_ENUMERATION_CONTEXT";
    case CimStatus::kInvalidOperationTimeout:
        return "CIM_ERR_INVALID_OPERATION_TIMEOUT";
    case CimStatus::kPullCannotBeAbandoned:
        return "CIM_ERR_PULL_CANNOT_BE_ABANDONED";
    case CimStatus::kFilteredEnumerationNotSupported:
        return "CIM_ERR_FILTERED_ENUMERATION_NOT_SUPPORTED";
    case CimStatus::kContinuationOnErrorNotSupported:
        return "CIM_ERR_CONTINUATION_ON_ERROR_NOT_SUPPORTED";
    case CimStatus::kServerLimitsExceeded:
        return "CIM_ERR_SERVER_LIMITS_EXCEEDED";
    }
    return "CIM_ERR_FAILED";
}

} // namespace

CimError::CimError(CimStatus status, std::string_view detail)
    : std::runtime_error(std::string(SymbolicName(status)).append(": ").append(detail)), status_(status) {}

} // namespace demo
