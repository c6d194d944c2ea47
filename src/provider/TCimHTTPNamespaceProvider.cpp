#include "provider/TCimHTTPNamespaceProvider.h"

#include "host/INamespaceProviderManager.h"
#include "host/TRootObject.h"
#include "provider/TCimHTTPNamespace.h"

#include <boost/make_shared.hpp>

#include <iostream> // the standard streams must be ready when loading this library writes to the log

namespace NQORVYX20 {

boost::shared_ptr<TCimHTTPNamespaceProvider> TCimHTTPNamespaceProvider::GetInstance() {
    static const boost::shared_ptr<TCimHTTPNamespaceProvider> fgInstance(new TCimHTTPNamespaceProvider);
    return fgInstance;
}

TVYXStatusCode TCimHTTPNamespaceProvider::Initialize() {
    const auto provider = GetInstance(); // before the manager, so that it ends after one that is made on demand
    TRootObject::GetNamespaceProviderManager()->RegisterNamespaceProvider(provider);
    return TVYXStatusCode(TVYXStatusCode::eSuccess);
}

const std::string& TCimHTTPNamespaceProvider::GetName(TCIMContext /*context*/) const {
    static const std::string fgName = "cimhttp";
    return fgName;
}

boost::shared_ptr<ICIMNamespace> TCimHTTPNamespaceProvider::AllocateNamespace(TCIMContext context,
                                                                              bool redefine) const {
    const auto nameSpace = boost::make_shared<TCimHTTPNamespace>(redefine);
    nameSpace->Initialize(context);
    return nameSpace;
}

int TCimHTTPNamespaceProvider::GetType(TCIMContext /*context*/) const {
    constexpr int kRemoteServer = 2;
    return kRemoteServer;
}

bool TCimHTTPNamespaceProvider::IsIndicationsSupported(TCIMContext /*context*/) const { return false; }

namespace {

void InmemInit() { TCimHTTPNamespaceProvider::Initialize(); }

/// Registers the provider while the library is being loaded; nothing is exported for the host to call.
const struct TLoader {
    TLoader() { InmemInit(); }
} fgLoader;

} // namespace

} // namespace NQORVYX20
