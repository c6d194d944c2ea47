#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `profiles`: the profiles that the server says it conforms to, with their central instances.
class ProfilesCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;
};

} // namespace cimhttp
