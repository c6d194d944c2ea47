#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `class NAME`: what the server says of a class, as MOF and in other forms.
class ClassCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    std::string name_;
    bool isWhole_ = false; ///< in MOF, what the class inherits is written out
};

} // namespace cimhttp
