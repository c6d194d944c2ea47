#include "host/TVYXStatusCode.h"

namespace NQORVYX20 {

const char* TVYXStatusCode::TranslateStatusCode() const noexcept {
    switch (code_) {
    case eSuccess:
        return "The operation succeeded.";
    case eNotSupported:
        return "The operation is not supported.";
    case eTypeMismatch:
        return "The type of the value does not match the type that is expected.";
    case eNotFound:
        return "The element was not found.";
    case eAlreadyExists:
        return "An element of this name exists already.";
    case eInvalidName:
        return "The name is not a valid CIM name.";
    case eQualifierConflict:
        return "The qualifier conflicts with one that may not be overridden.";
    case eReadOnly:
        return "The operation was refused because the object is read-only.";
    case eContextValueMissing:
        return "A value that the operation needs is missing from the context.";
    case eRemoteConnectionFailed:
        return "The connection to the remote server failed.";
    default:
        return "The operation failed with an unknown status.";
    }
}

} // namespace NQORVYX20
