#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `instances NAME`: the instances of a class. A table has the properties asked for as columns, or all that have a
/// value somewhere, the keys first.
class InstancesCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    std::string name_;
    std::vector<std::string> properties_; ///< the properties to show; empty for all
    std::vector<std::string> conditions_; ///< `PROPERTY=VALUE`, all of which must hold
    bool deep_ = false;
    bool raw_ = false; ///< values as they are, not as people read them
};

} // namespace cimhttp
