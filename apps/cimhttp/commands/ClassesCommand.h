#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `classes [PATTERN]`: the names of the server's classes, in alphabetical order.
class ClassesCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    std::string pattern_;
};

} // namespace cimhttp
