#include "TNamespaceProviderManager.h"

#include "host/ILogger.h"
#include "host/INamespaceProvider.h"
#include "host/TCIMValue.h"
#include "host/TRootObject.h"

namespace NQORVYX20 {

namespace {

TVYXStatusCode Refuse(TVYXStatusCode::EStatusCode code, const std::string& reason) {
    TRootObject::GetCoreLogger()->Log(ILogger::eLogError, "The namespace provider was not registered: " + reason);
    return TVYXStatusCode(code);
}

} // namespace

TVYXStatusCode TNamespaceProviderManager::RegisterNamespaceProvider(boost::shared_ptr<INamespaceProvider> provider) {
    if (!provider) {
        return Refuse(TVYXStatusCode::eTypeMismatch, "it is an empty pointer");
    }
    const std::string name = provider->GetName(TCIMContext());
    const auto isKept = [&] {
        const std::lock_guard<std::mutex> lock(mutex_);
        return providers_.emplace(name, provider).first->second == provider;
    };
    return isKept() ? TVYXStatusCode() : Refuse(TVYXStatusCode::eAlreadyExists, "another one has the name " + name);
}

boost::shared_ptr<INamespaceProvider> TNamespaceProviderManager::GetNamespaceProvider(const std::string& name) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = providers_.find(name);
    return found == providers_.end() ? boost::shared_ptr<INamespaceProvider>() : found->second;
}

void TNamespaceProviderManager::EnumerateNamespaceProviders(
    const boost::function<bool(boost::shared_ptr<INamespaceProvider>)>& callback) const {
    const auto copyProviders = [this] {
        const std::lock_guard<std::mutex> lock(mutex_);
        return providers_;
    };
    for (const auto& [name, provider] : copyProviders()) {
        if (!callback(provider)) {
            return;
        }
    }
}

void TNamespaceProviderManager::UnregisterNamespaceProvider(const std::string& name) {
    TProviders::node_type unregistered; // outlives the lock, for the provider may end with it
    const std::lock_guard<std::mutex> lock(mutex_);
    unregistered = providers_.extract(name);
}

} // namespace NQORVYX20
