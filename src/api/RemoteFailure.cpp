#include "cimhttp/RemoteFailure.h"

#include "api/OwnNamespace.h"
#include "provider/TCimHTTPNamespace.h"

namespace NQORVYX20 {

std::optional<RemoteFailure> LastFailure(const ICIMNamespace& nameSpace) {
    return OwnNamespace(nameSpace).LastFailure();
}

} // namespace NQORVYX20
