#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `doctor`: what works of all that reading a server needs, and what to try where something does not. The exit status
/// is that of the first failure.
class DoctorCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;
};

} // namespace cimhttp
