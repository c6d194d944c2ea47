#include "connection/Plugin.h"

#include "Failure.h"
#include "cimhttp/ContextKeys.h"
#include "connection/OwnLibrary.h"
#include "host/ICIMNamespace.h"
#include "host/INamespaceProvider.h"
#include "host/INamespaceProviderManager.h"
#include "host/TRootObject.h"

#include <dlfcn.h>

#include <utility>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

constexpr const char* kProviderName = "cimhttp";

boost::shared_ptr<INamespaceProvider> LoadProvider(const std::string& path) {
    if (::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL) == nullptr) {
        throw Failure(Failure::kOther, std::string("the plug-in cannot be loaded: ") + ::dlerror());
    }
    auto provider = TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider(kProviderName);
    if (!provider) {
        throw Failure(Failure::kOther, path + " is not the plug-in: it registers no provider '" + kProviderName + "'");
    }
    return provider;
}

/// The plug-in must be loaded already.
const PluginAccess* LoadAccess() {
    return reinterpret_cast<PluginAccessFunction*>(OwnLibraryFunction(kPluginAccessLibrary, kPluginAccessFunction))();
}

} // namespace

Plugin::Plugin(const std::string& path) : path_(path), provider_(LoadProvider(path)), access_(LoadAccess()) {}

boost::shared_ptr<ICIMNamespace> Plugin::AllocateNamespace(TCIMContext settings) const {
    settings.emplace(kPluginNameKey, TCIMValue(kProviderName));
    settings.emplace(kReadingKey, TCIMValue(kFaithfulReading));
    return provider_->AllocateNamespace(std::move(settings), false);
}

} // namespace cimhttp
