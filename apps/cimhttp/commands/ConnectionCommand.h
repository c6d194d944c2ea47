#pragma once

#include "commands/Command.h"

namespace cimhttp {

class ConnectionStore;

/// `connection add|list|remove|test [NAME]`: the user's named connections.
class ConnectionCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    void Add(const ConnectionStore& store, const CommandContext& context) const;
    void List(const ConnectionStore& store, const CommandContext& context);
    void Remove(const ConnectionStore& store) const;
    void Test(const CommandContext& context) const;

    std::string action_;
    std::string name_; ///< empty where it is not given
    bool stores_password_ = false;
};

} // namespace cimhttp
