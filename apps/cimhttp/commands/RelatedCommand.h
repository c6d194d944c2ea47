#pragma once

#include "commands/Command.h"

namespace cimhttp {

/// `related PATH`: what hangs together with an instance, over one association or several.
class RelatedCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    std::string path_;
    std::optional<std::size_t> depth_; ///< how many associations one behind the other; kUsualDepth if empty
};

} // namespace cimhttp
