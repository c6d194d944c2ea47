#pragma once

#include "commands/Command.h"
#include "commands/InstanceCensus.h"

namespace cimhttp {

/// `count [PATTERN]`: how many instances each class has, without those of its subclasses.
class CountCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    void Write(const std::vector<InstanceCensus::Count>& counts, const CommandContext& context);

    std::string pattern_;
    std::vector<std::string> order_;
    std::optional<std::size_t> limit_; ///< see RowLimit
    bool all_ = false;                 ///< with the classes that have no instance
};

} // namespace cimhttp
