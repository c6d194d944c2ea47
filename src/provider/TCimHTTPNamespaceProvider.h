#pragma once

#include "host/INamespaceProvider.h"
#include "host/TVYXStatusCode.h"

#include <boost/shared_ptr.hpp>

namespace NQORVYX20 {

/// The plug-in's entry: makes namespaces that stand for remote CIM servers. Loading the plug-in registers the one
/// provider; it keeps no state, so that its operations may be called from several threads at once.
class TCimHTTPNamespaceProvider : public INamespaceProvider {
  public:
    /// The provider of this process.
    static boost::shared_ptr<TCimHTTPNamespaceProvider> GetInstance();

    /// Registers the provider with the host's manager. Always success.
    static TVYXStatusCode Initialize();

    /// "cimhttp", the same object on every call.
    const std::string& GetName(TCIMContext context) const override;

    /// A new namespace, not connected. The context must have the key "pluginNameQualDeclValue", or TVYXException
    /// eContextValueMissing is thrown. With `redefine`, classes and qualifier declarations may be added again under a
    /// name that is taken.
    boost::shared_ptr<ICIMNamespace> AllocateNamespace(TCIMContext context, bool redefine) const override;

    /// 2: the namespaces stand for remote servers.
    int GetType(TCIMContext context) const override;

    /// False.
    bool IsIndicationsSupported(TCIMContext context) const override;
};

} // namespace NQORVYX20
