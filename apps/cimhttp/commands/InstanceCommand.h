#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `instance PATH`: one instance by its object path.
class InstanceCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    std::string path_;
    bool wide_ = false; ///< see WideRecords()
    bool raw_ = false;  ///< values as they are, not as people read them
};

} // namespace cimhttp
