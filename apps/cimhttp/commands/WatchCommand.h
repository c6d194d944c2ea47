#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `watch NAME`: reads the instances of a class again and again and shows what has changed. Ends after a number of
/// rounds, or in good order when the user interrupts it.
class WatchCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    std::string name_;
    std::vector<std::string> properties_; ///< the properties to watch; empty for all
    std::vector<std::string> conditions_; ///< see InstanceFilter
    double interval_ = 5;                 ///< seconds between two rounds
    std::optional<std::size_t> count_;    ///< how many rounds there are behind the first; without end if empty
};

} // namespace cimhttp
