#pragma once

#include "provider/ConnectionOptions.h"

#include <optional>
#include <string>
#include <vector>

namespace NQORVYX20 {

/// Every key of contexts that the plug-in knows begins with it, and none of the host's own does.
constexpr const char* kKeyPrefix = "cimhttp.";

/// What may be said of a connection under one key.
struct OptionRule {
    enum class Kind { kFlag, kMilliseconds, kCount, kNamespace, kFingerprint, kPath };

    std::string key;
    Kind kind;
    std::string decision; ///< keys with the same one are one decision: who gives one of them decides about all

    /// The key without its prefix, as a policy has it.
    std::string Name() const;

    /// What is wrong with a value, which is empty where it is of no kind that options have: the end of a sentence that
    /// begins with the key. Empty for a good one.
    std::string FaultOf(const std::optional<ConnectionOptions::Value>& value) const;
};

/// For all keys of a connection, in the order in which messages list them.
const std::vector<OptionRule>& OptionRules();

/// The rule of a key; null when there is none.
const OptionRule* FindOptionRule(const std::string& key);

/// The keys, of those that are given, which ask that a server is verified or shown a certificate: what only an
/// encrypted connection can do.
std::vector<std::string> KeysThatNeedTls(const ConnectionOptions& options);

/// Why what one party says cannot be meant, such as trust in a server without encryption: a sentence. Empty when it
/// can.
std::string ContradictionIn(const ConnectionOptions& options);

} // namespace NQORVYX20
