#include "cimhttp/Connect.h"

#include "api/OwnNamespace.h"
#include "cimhttp/ContextKeys.h"
#include "convert/CoreLog.h"
#include "host/INamespaceProvider.h"
#include "host/INamespaceProviderManager.h"
#include "host/TCIMValue.h"
#include "host/TRootObject.h"
#include "host/TVYXException.h"
#include "provider/TCimHTTPNamespace.h"

#include <utility>

namespace NQORVYX20 {

namespace {

constexpr const char* kProviderName = "cimhttp";

} // namespace

boost::shared_ptr<ICIMNamespace> AllocateRemoteNamespace(TCIMContext options) {
    const auto provider = TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider(kProviderName);
    if (!provider) {
        LogError(std::string("TCimHTTPNamespace: the provider manager has no provider '") + kProviderName + "'");
        throw TVYXException(TVYXStatusCode::eNotFound);
    }
    options.emplace(kPluginNameKey, TCIMValue(kProviderName));
    return provider->AllocateNamespace(std::move(options), false);
}

void ConnectNamespace(ICIMNamespace& nameSpace, const std::string& host, const std::string& user,
                      const std::string& password, int port) {
    OwnNamespace(nameSpace).connect(host, user, password, port);
}

void DisconnectNamespace(ICIMNamespace& nameSpace) { OwnNamespace(nameSpace).disconnect(); }

bool IsConnected(ICIMNamespace& nameSpace) { return OwnNamespace(nameSpace).isConnected(); }

bool WouldVerifyServer(const ICIMNamespace& nameSpace, const std::string& host, int port) {
    return OwnNamespace(nameSpace).WouldVerify(host, port);
}

} // namespace NQORVYX20
