#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `qualifiers [--class NAME]`: the qualifiers that the server declares, or those of a class and its elements.
class QualifiersCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    std::string class_;
};

} // namespace cimhttp
