#pragma once

#include "host/TVYXStatusCode.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class INamespaceProvider;

/// The providers that a host has loaded. A plug-in registers its provider while it is being loaded. All operations may
/// be called from several threads at once.
class INamespaceProviderManager {
  public:
    virtual ~INamespaceProviderManager() = default;

    /// Keeps the provider under its name. To register the same provider again changes nothing. Another provider of a
    /// name already taken is refused with the status eAlreadyExists and a line in the log, never with an exception:
    /// registration runs while a library is being loaded, where one could not be caught.
    virtual TVYXStatusCode RegisterNamespaceProvider(boost::shared_ptr<INamespaceProvider> provider) = 0;

    /// The provider of that name, or an empty pointer.
    virtual boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(const std::string& name) const = 0;

    /// Calls back once per provider, in the order of their names, until the callback returns false. The callback may
    /// call the manager.
    virtual void
    EnumerateNamespaceProviders(const boost::function<bool(boost::shared_ptr<INamespaceProvider>)>& callback) const = 0;

    /// Forgets the provider of that name; namespaces that it made live on. An unknown name changes nothing.
    virtual void UnregisterNamespaceProvider(const std::string& name) = 0;
};

} // namespace NQORVYX20
