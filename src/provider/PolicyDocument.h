#pragma once

#include "provider/ConnectionOptions.h"
#include "provider/HostPattern.h"

#include <string>
#include <vector>

namespace NQORVYX20 {

/// What a policy says of the servers that one of the patterns matches.
struct PolicyEntry {
    std::vector<HostPattern> patterns;
    ConnectionOptions forced;
    ConnectionOptions defaults;
};

/// The text of a policy, a document in JSON:
///     {"servers": [{"match": "*.storage.example", "force": {"tls": true}, "default": {"timeout": 30000}}]}
/// `match` is a pattern or a list of them; the options have the names of the context's keys without their prefix.
class PolicyDocument {
  public:
    /// Throws PolicyFault with the line or the entry that is at fault. An unknown member is a fault, and so is one that
    /// occurs twice.
    explicit PolicyDocument(const std::string& text);

    const std::vector<PolicyEntry>& Entries() const { return entries_; }

  private:
    std::vector<PolicyEntry> entries_;
};

} // namespace NQORVYX20
