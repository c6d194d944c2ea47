#pragma once

#include "provider/PolicyDocument.h"
#include "provider/PolicyFile.h"

#include <cstddef>
#include <string>
#include <vector>

namespace NQORVYX20 {

/// How this machine's servers are connected to, whatever host asks: the content of its policy file, or nothing.
class ConnectionPolicy {
  public:
    /// An entry that counts for a server, and why.
    struct Match {
        const PolicyEntry* entry;
        std::string text; ///< "entry 1 ('*.example')"
    };

    /// Reads the file. Throws PolicyFault, which names it, when it cannot be followed.
    explicit ConnectionPolicy(const PolicyFile& file);

    /// "policy /etc/cimhttp/policy.json"
    std::string Name() const { return "policy " + path_; }

    /// The entries of a server, in their order. Throws PolicyFault for a host name with which that cannot be decided.
    /// They live as long as the policy.
    std::vector<Match> MatchesFor(const std::string& host) const;

  private:
    void Read(const PolicyFile& file);

    std::string path_;
    std::vector<PolicyEntry> entries_;
};

} // namespace NQORVYX20
