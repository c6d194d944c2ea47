#pragma once

#include "Command.h"

namespace cimhttp {

/// `instances NAME`: the instances of a class as a table.
class InstancesCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    std::string name_;
    std::vector<std::string> properties_; ///< the properties to show; empty for all
    bool deep_ = false;
    bool raw_ = false; ///< values as they are, not as people read them
};

} // namespace cimhttp
