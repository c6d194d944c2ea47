#include "host/TVYXStatusCode.h"

namespace NQORVYX20 {

const char* TVYXStatusCode::TranslateStatusCode() const noexcept {
    switch (code_) {
    case 0:
        return "The operation succeeded.";
    case 1:
        return "The operation is not supported.";
    case 14:
        return "The type of the value does not match the type that is expected.";
    case 15:
        return "The element was not found.";
    case 16:
        return "An element of this name exists already.";
    case 25:
        return "The name is not a valid CIM name.";
    case 28:
        return "The qualifier conflicts with one that may not be overridden.";
    case 31:
        return "The operation was refused because the object is read-only.";
    case 32:
        return "A value that the operation needs is missing from the context.";
    case 42:
        return "The connection to the remote server failed.";
    default:
        return "The operation failed with an unknown status.";
    }
}

} // namespace NQORVYX20
