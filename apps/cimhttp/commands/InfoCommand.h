#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `info`: the plug-in, its provider and the server.
class InfoCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;
};

} // namespace cimhttp
