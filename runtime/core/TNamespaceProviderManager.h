#pragma once

#include "host/INamespaceProviderManager.h"

#include <map>
#include <mutex>

namespace NQORVYX20 {

/// The registry of the process. No lock is held while a callback or a provider runs.
class TNamespaceProviderManager : public INamespaceProviderManager {
  public:
    TVYXStatusCode RegisterNamespaceProvider(boost::shared_ptr<INamespaceProvider> provider) override;
    boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(const std::string& name) const override;
    void EnumerateNamespaceProviders(
        const boost::function<bool(boost::shared_ptr<INamespaceProvider>)>& callback) const override;
    void UnregisterNamespaceProvider(const std::string& name) override;

  private:
    using TProviders = std::map<std::string, boost::shared_ptr<INamespaceProvider>>;

    mutable std::mutex mutex_;
    TProviders providers_;
};

} // namespace NQORVYX20
