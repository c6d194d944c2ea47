#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <optional>
#include <string>

#include "host/TCIMContext.h"

namespace NQORVYX20 {

/// What a host says in the context of AllocateNamespace (ContextKeys.h).
class NamespaceOptions {
  public:
    /// Throws TVYXException, after a line in the log: 32 when the plug-in's name is missing, 14 for a value that is not
    /// one of its key's.
    explicit NamespaceOptions(const TCIMContext& context);

    const std::string& PluginName() const { return fPluginName; }
    bool IsFaithful() const { return fIsFaithful; }

    /// Empty when the host does not say.
    const std::optional<Pegasus::CIMNamespaceName>& RemoteNamespace() const { return fRemoteNamespace; }

  private:
    std::string fPluginName;
    bool fIsFaithful = false;
    std::optional<Pegasus::CIMNamespaceName> fRemoteNamespace;
};

} // namespace NQORVYX20
