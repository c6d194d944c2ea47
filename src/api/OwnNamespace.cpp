#include "api/OwnNamespace.h"

#include "convert/CoreLog.h"
#include "host/TVYXException.h"
#include "provider/TCimHTTPNamespace.h"

namespace NQORVYX20 {

namespace {

template <typename Own, typename Given>
Own& AsOwn(Given& nameSpace) {
    if (auto* const own = dynamic_cast<Own*>(&nameSpace)) {
        return *own;
    }
    LogError("TCimHTTPNamespace: a namespace of another provider cannot be used as a remote server's");
    throw TVYXException(TVYXStatusCode::eTypeMismatch);
}

} // namespace

TCimHTTPNamespace& OwnNamespace(ICIMNamespace& nameSpace) { return AsOwn<TCimHTTPNamespace>(nameSpace); }

const TCimHTTPNamespace& OwnNamespace(const ICIMNamespace& nameSpace) {
    return AsOwn<const TCimHTTPNamespace>(nameSpace);
}

} // namespace NQORVYX20
