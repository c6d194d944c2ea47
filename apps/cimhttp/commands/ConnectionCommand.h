#pragma once

#include "commands/Command.h"

namespace cimhttp {

class ConnectionStore;
class Listing;
struct Options;

/// `connection add|list|remove|test [NAME]`: the user's named connections. `connection known|forget [SERVER]`: the
/// servers that the user knows by their certificates.
class ConnectionCommand : public Command {
  public:
    CommandDescription Describe() override;
    int Run(const CommandContext& context) override;

  private:
    void RunOnConnections(const ConnectionStore& store, const CommandContext& context);
    void Add(const ConnectionStore& store, const CommandContext& context) const;
    void List(const ConnectionStore& store, const CommandContext& context);
    void Remove(const ConnectionStore& store) const;
    void Test(const CommandContext& context) const;
    void ListKnown(const CommandContext& context);
    void Forget(const Options& options) const;
    void Write(const Listing& listing, const char* nothing, const CommandContext& context);

    std::string action_;
    std::string name_; ///< empty where it is not given
    bool storesPassword_ = false;
};

} // namespace cimhttp
