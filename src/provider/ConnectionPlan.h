#pragma once

#include "provider/ConnectionOptions.h"
#include "provider/ConnectionPolicy.h"

#include <map>
#include <string>
#include <vector>

namespace NQORVYX20 {

/// How connect() goes about one connection: what the host says, under the machine's policy.
class ConnectionPlan {
  public:
    enum class Transport {
        kNone, ///< nothing is attempted
        kPlain,
        kTls
    };

    /// Throws PolicyFault where the policy has no answer for the host's name, and ConnectionRefusal where the
    /// connection must not be made: on a port that there is not, or without the encryption that its options need.
    ConnectionPlan(const ConnectionOptions& ofHost, const ConnectionPolicy& policy, const std::string& host, int port);

    const ConnectionOptions& Options() const { return options_; }
    Transport ChosenTransport() const { return transport_; }

    /// What the policy has decided, a line for the log; empty when it says nothing of the server.
    const std::string& Decision() const { return decision_; }

  private:
    /// Who has decided about an option.
    enum class Origin { kForced, kHost, kDefault };

    using Matches = std::vector<ConnectionPolicy::Match>;

    void Merge(const Matches& matches, const ConnectionOptions& ofHost);
    void Take(const ConnectionOptions& options, Origin origin);
    bool IsDecided(const std::string& decision) const;
    void RemoveUnneededDefaults();
    Transport TransportOn(int port) const;
    void CheckPort(int port) const;
    void CheckEncryption(const std::string& policy) const;
    std::string DecisionText(const Matches& matches, const ConnectionOptions& ofHost, const std::string& host) const;
    std::string OptionText(const std::string& key, const ConnectionOptions& ofHost) const;

    ConnectionOptions options_;
    std::map<std::string, Origin> origins_; // of the options, by key
    Transport transport_ = Transport::kNone;
    std::string decision_;
};

} // namespace NQORVYX20
