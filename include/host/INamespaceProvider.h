#pragma once

#include "host/TCIMContext.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class ICIMNamespace;

/// A source of namespaces, registered with the INamespaceProviderManager under its name.
class INamespaceProvider {
  public:
    virtual ~INamespaceProvider() = default;

    virtual const std::string& GetName(TCIMContext context) const = 0;

    /// A new namespace, independent of all others. What `redefine` means is up to the provider.
    virtual boost::shared_ptr<ICIMNamespace> AllocateNamespace(TCIMContext context, bool redefine) const = 0;

    /// The kind of provider: 2 for one whose namespaces stand for a remote server.
    virtual int GetType(TCIMContext context) const = 0;

    virtual bool IsIndicationsSupported(TCIMContext context) const = 0;
};

} // namespace NQORVYX20
