#include "connection/Plugin.h"

#include "Failure.h"
#include "cimhttp/ContextKeys.h"
#include "connection/DynamicLibrary.h"
#include "host/ICIMNamespace.h"
#include "host/INamespaceProvider.h"
#include "host/INamespaceProviderManager.h"
#include "host/TRootObject.h"

#include <utility>

namespace cimhttp {

namespace {

using NQORVYX20::INamespaceProvider;
using NQORVYX20::TCIMContext;
using NQORVYX20::TCIMValue;
using NQORVYX20::TRootObject;

constexpr const char* kProviderName = "cimhttp";

boost::shared_ptr<INamespaceProvider> LoadProvider(const std::string& path) {
    LoadLibrary(path, "the plug-in");
    auto provider = TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider(kProviderName);
    if (!provider) {
        throw Failure(Failure::kOther, path + " is not the plug-in: it registers no provider '" + kProviderName + "'");
    }
    return provider;
}

/// The plug-in must be loaded already.
const PluginAccess* LoadAccess() {
    return FunctionOf<PluginAccessFunction>(kPluginAccessLibrary, kPluginAccessFunction)();
}

} // namespace

Plugin::Plugin(const std::string& path) : path_(path), provider_(LoadProvider(path)), access_(LoadAccess()) {}

boost::shared_ptr<NQORVYX20::ICIMNamespace> Plugin::AllocateNamespace(TCIMContext settings) const {
    settings.emplace(NQORVYX20::kPluginNameKey, TCIMValue(kProviderName));
    settings.emplace(NQORVYX20::kReadingKey, TCIMValue(NQORVYX20::kFaithfulReading));
    return provider_->AllocateNamespace(std::move(settings), false);
}

} // namespace cimhttp
