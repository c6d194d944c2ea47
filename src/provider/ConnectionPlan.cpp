#include "provider/ConnectionPlan.h"

#include "cimhttp/ContextKeys.h"
#include "provider/ConnectionRefusal.h"
#include "provider/HostName.h"
#include "provider/OptionRules.h"
#include "provider/PrintableText.h"
#include "provider/TlsOptions.h"

#include <algorithm>

namespace NQORVYX20 {

namespace {

using Kind = RemoteFailure::Kind;

constexpr int kHttpPort = 5988;
constexpr int kHttpsPort = 5989;
constexpr int kHighestPort = 0xffff;

} // namespace

ConnectionPlan::ConnectionPlan(const ConnectionOptions& ofHost, const ConnectionPolicy& policy, const std::string& host,
                               int port) {
    const Matches matches = policy.MatchesFor(host);
    Merge(matches, ofHost);
    transport_ = TransportOn(port);
    RemoveUnneededDefaults();
    CheckPort(port);
    CheckEncryption(policy.Name());
    if (const std::string unsupported = UnsupportedIn(options_); !unsupported.empty()) {
        throw ConnectionRefusal(Kind::kPolicy, policy.Name() + ": " + unsupported); // a host's own were refused before
    }
    if (!matches.empty()) {
        decision_ = policy.Name() + DecisionText(matches, ofHost, host);
    }
}

// --- Merging -----------------------------------------------------------------------------------------------------

/// Whoever comes first decides.
void ConnectionPlan::Merge(const Matches& matches, const ConnectionOptions& ofHost) {
    for (const auto& match : matches) {
        Take(match.entry->forced, Origin::kForced);
    }
    Take(ofHost, Origin::kHost);
    for (const auto& match : matches) {
        Take(match.entry->defaults, Origin::kDefault);
    }
}

void ConnectionPlan::Take(const ConnectionOptions& options, Origin origin) {
    ConnectionOptions taken;
    for (const auto& [key, value] : options.All()) {
        if (!IsDecided(FindOptionRule(key)->decision)) {
            taken.Set(key, value);
        }
    }
    for (const auto& [key, value] : taken.All()) {
        options_.Set(key, value);
        origins_.emplace(key, origin);
    }
}

bool ConnectionPlan::IsDecided(const std::string& decision) const {
    const auto& options = options_.All();
    return std::any_of(options.begin(), options.end(),
                       [&](const auto& option) { return FindOptionRule(option.first)->decision == decision; });
}

/// Removes the defaults that only an encrypted connection can follow, where the connection is plain.
void ConnectionPlan::RemoveUnneededDefaults() {
    for (const std::string& key : KeysThatNeedTls(options_)) {
        if (transport_ != Transport::kTls && origins_.at(key) == Origin::kDefault) {
            options_.Remove(key);
        }
    }
}

// --- Checking ----------------------------------------------------------------------------------------------------

ConnectionPlan::Transport ConnectionPlan::TransportOn(int port) const {
    if (const auto tls = options_.Flag(kTlsKey)) {
        return *tls ? Transport::kTls : Transport::kPlain;
    }
    return port == kHttpPort ? Transport::kPlain : port == kHttpsPort ? Transport::kTls : Transport::kNone;
}

void ConnectionPlan::CheckPort(int port) const {
    if (transport_ != Transport::kNone && (port < 1 || port > kHighestPort)) {
        throw ConnectionRefusal(Kind::kOther, "a port is a number from 1 to " + std::to_string(kHighestPort) +
                                                  ", which " + std::to_string(port) + " is not");
    }
}

void ConnectionPlan::CheckEncryption(const std::string& policy) const {
    const auto keys = KeysThatNeedTls(options_);
    if (keys.empty() || transport_ == Transport::kTls) {
        return;
    }
    const auto forced =
        std::find_if(keys.begin(), keys.end(), [&](const auto& key) { return origins_.at(key) == Origin::kForced; });
    const std::string why =
        (forced == keys.end() ? keys.front() : *forced) + " is given for a connection that would not be encrypted";
    const auto tls = origins_.find(kTlsKey);
    if (forced != keys.end() || (tls != origins_.end() && tls->second != Origin::kHost)) {
        throw ConnectionRefusal(Kind::kPolicy, policy + ": " + why);
    }
    throw ConnectionRefusal(Kind::kOther, why);
}

// --- Telling -----------------------------------------------------------------------------------------------------

std::string ConnectionPlan::DecisionText(const Matches& matches, const ConnectionOptions& ofHost,
                                         const std::string& host) const {
    std::string head;
    for (const auto& match : matches) {
        head += ", " + match.text;
    }
    head += ", for " + (host.empty() ? NormalHost(host) : PrintableText(host)) + ": ";
    std::string options;
    for (const OptionRule& rule : OptionRules()) {
        const std::string text = OptionText(rule.key, ofHost);
        options += (options.empty() || text.empty() ? "" : ", ") + text;
    }
    return head + (options.empty() ? "nothing" : options);
}

/// What the policy says of an option; empty where it says nothing.
std::string ConnectionPlan::OptionText(const std::string& key, const ConnectionOptions& ofHost) const {
    const auto said = ofHost.All().find(key);
    const bool isSaid = said != ofHost.All().end();
    const std::string name = FindOptionRule(key)->Name();
    if (!options_.Has(key)) {
        return isSaid ? name + " none (forced; the host said " + TextOf(said->second) + ")" : "";
    }
    const std::string text = name + ' ' + TextOf(options_.All().at(key));
    switch (origins_.at(key)) {
    case Origin::kForced:
        return text + (isSaid ? " (forced; the host said " + TextOf(said->second) + ")" : " (forced)");
    case Origin::kDefault:
        return text + " (default)";
    default:
        return {};
    }
}

} // namespace NQORVYX20
