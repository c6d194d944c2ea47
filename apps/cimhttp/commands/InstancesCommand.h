#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `instances NAME`: the instances of a class and its subclasses. A table has the properties asked for as columns, or
/// all of the class that have something to show, the keys first.
class InstancesCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    int WritePaths(const CommandContext& context);
    void CheckPathOptions(const CommandContext& context) const;

    std::string name_;
    std::vector<std::string> properties_; ///< see InstanceQuery, here and below
    std::vector<std::string> conditions_;
    bool exact_ = false; ///< without the instances of subclasses
    bool deep_ = false;  ///< with the properties that subclasses add
    bool paths_ = false; ///< the paths alone
    bool raw_ = false;   ///< values as they are, not as people read them
};

} // namespace cimhttp
