#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `classes [PATTERN]`: the names of the server's classes, in alphabetical order.
class ClassesCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    void Write(const std::vector<std::string>& names, const CommandContext& context);

    std::string pattern_;
    std::optional<std::size_t> limit_; ///< see RowLimit
};

} // namespace cimhttp
