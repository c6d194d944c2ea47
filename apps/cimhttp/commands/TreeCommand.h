#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `tree [CLASS]`: the hierarchy of all classes, or of a class and those below it.
class TreeCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    std::string root_;
};

} // namespace cimhttp
