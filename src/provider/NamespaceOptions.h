#pragma once

#include "host/TCIMContext.h"
#include "provider/ConnectionOptions.h"

#include <string>

namespace NQORVYX20 {

/// What a host says in the context of AllocateNamespace (ContextKeys.h).
class NamespaceOptions {
  public:
    /// Throws TVYXException, after a line in the log: eContextValueMissing when the plug-in's name is missing,
    /// eTypeMismatch for an unknown key with the plug-in's prefix, for a value that is not valid for its key, and for
    /// values that contradict each other.
    explicit NamespaceOptions(const TCIMContext& context);

    const std::string& PluginName() const { return pluginName_; }
    bool IsFaithful() const { return isFaithful_; }
    bool IsLenient() const { return isLenient_; }
    const ConnectionOptions& Connection() const { return connection_; }

  private:
    std::string pluginName_;
    bool isFaithful_ = false;
    bool isLenient_ = false;
    ConnectionOptions connection_;
};

} // namespace NQORVYX20
