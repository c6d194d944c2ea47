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
    }
    return "CIM_ERR_FAILED";
}

} // namespace

CimError::CimError(CimStatus status, std::string_view detail)
    : std::runtime_error(std::string(SymbolicName(status)).append(": ").append(detail)), status_(status) {}

} // namespace demo
