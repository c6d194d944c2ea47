#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <cstdint>
#include <optional>
#include <string>

#include "host/TCIMContext.h"

namespace NQORVYX20 {

/// Numbers that a host may give; those that it does not give are empty.
struct RemoteLimits {
    std::optional<std::uint32_t> connectMilliseconds;
    std::optional<std::uint32_t> requestMilliseconds;
    std::optional<std::uint64_t> answerBytes;
    std::optional<std::uint64_t> answerObjects;
    std::optional<std::uint64_t> elements;
};

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

    const RemoteLimits& Limits() const { return fLimits; }

  private:
    std::string fPluginName;
    bool fIsFaithful = false;
    std::optional<Pegasus::CIMNamespaceName> fRemoteNamespace;
    RemoteLimits fLimits;
};

} // namespace NQORVYX20
