#pragma once

#include "commands/Command.h"
#include "connection/Session.h"

namespace cimhttp {

class GivenKeys;

/// `instance PATH`: one instance by its object path, or by its class and keys, see InstanceFinder.
class InstanceCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    /// Nothing when the user chooses none.
    std::optional<Session::FoundInstance> Find(Session& session, const GivenKeys& keys,
                                               const CommandContext& context) const;

    std::string path_;              ///< or the name of a class
    std::vector<std::string> keys_; ///< see GivenKeys
    bool wide_ = false;             ///< see WideRecords()
    bool raw_ = false;              ///< values as they are, not as people read them
};

} // namespace cimhttp
