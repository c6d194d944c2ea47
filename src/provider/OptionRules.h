#pragma once

#include "provider/ConnectionOptions.h"

#include <optional>
#include <string>
#include <vector>

namespace NQORVYX20 {

/// Every key of contexts that the plug-in knows begins with it, and none of the host's own does.
constexpr const char* kKeyPrefix = "cimhttp.";

/// The rule for one option of a connection.
struct OptionRule {
    enum class Kind { kFlag, kMilliseconds, kCount, kNamespace, kFingerprint, kPath };

    std::string key;
    Kind kind;
    std::string decision; ///< keys with one decision belong together: whoever sets one of them decides about all

    /// The key without its prefix, as a policy has it.
    std::string Name() const;

    /// What is wrong with a value, as the end of a sentence that begins with the key; empty for a valid one. No value
    /// stands for one of a type that options do not have.
    std::string FaultOf(const std::optional<ConnectionOptions::Value>& value) const;
};

/// For all keys of a connection, in the order in which messages list them.
const std::vector<OptionRule>& OptionRules();

/// The rule of a key; null when there is none.
const OptionRule* FindOptionRule(const std::string& key);

/// Those of the given keys that ask for the server to be verified, or to be shown a certificate, which only an
/// encrypted connection can do.
std::vector<std::string> KeysThatNeedTls(const ConnectionOptions& options);

/// How the options of one party contradict each other, such as a trust store without encryption: a sentence. Empty when
/// they do not.
std::string ContradictionIn(const ConnectionOptions& options);

} // namespace NQORVYX20
