#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `methods NAME`: the methods of a class.
class MethodsCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    std::string name_;
};

} // namespace cimhttp
