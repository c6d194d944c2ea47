#pragma once

#include "Command.h"

namespace cimhttp {

/// `class NAME`: a class as MOF.
class ClassCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    std::string name_;
};

} // namespace cimhttp
