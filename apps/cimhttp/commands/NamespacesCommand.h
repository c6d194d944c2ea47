#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `namespaces`: the namespaces of the server.
class NamespacesCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;
};

} // namespace cimhttp
