#include "exporter/Targets.h"

#include "Failure.h"
#include "connection/ConnectionStore.h"
#include "connection/ServerName.h"
#include "text/Names.h"

#include <algorithm>
#include <utility>

namespace cimhttp {

namespace {

/// How many servers are kept at most, so that nobody fills the memory by asking for others.
constexpr std::size_t kMostTargets = 10000;

} // namespace

Targets::Targets(const Plugin& plugin, const Options& options, const ScrapeLimits& limits,
                 std::vector<std::string> allowedHosts)
    : plugin_(plugin),
      options_(options),
      limits_(limits),
      allowedHosts_(std::move(allowedHosts)),
      places_(limits.targets) {}

/// A target of which the connection has changed in the file notices that itself, where its name remains.
std::shared_ptr<Target> Targets::Find(const std::string& name) {
    const auto options = OptionsFor(name);
    const std::lock_guard<std::mutex> lock(mutex_);
    LeaveIdle();
    if (!options) {
        targets_.erase(name);
        return nullptr;
    }
    const auto known = targets_.find(name);
    if (known != targets_.end()) {
        return known->second;
    }
    if (targets_.size() >= kMostTargets) {
        throw Failure(Failure::kOther, "too many servers are known");
    }
    return targets_.emplace(name, std::make_shared<Target>(plugin_, *options, limits_, places_)).first->second;
}

std::vector<std::string> Targets::Names() {
    const auto store = ConnectionStore::OfUser();
    std::vector<std::string> names;
    for (const auto& [name, connection] : store ? store->Read() : ConnectionStore::Connections()) {
        names.push_back(name);
    }
    return names;
}

std::optional<Options> Targets::OptionsFor(const std::string& name) const {
    Options own = Unattended(options_);
    own.server = name;
    own.connection = name;
    const auto store = ConnectionStore::OfUser();
    const auto connections = store ? store->Read() : ConnectionStore::Connections();
    if (connections.count(name) > 0) {
        return own;
    }
    if (!IsAllowed(name)) {
        return std::nullopt;
    }
    own.connection.reset();
    own.host = name;
    own.user.reset(); // whoever this host is gets nobody's password
    own.password.reset();
    own.passwordVariable.reset();
    own.tlsSettings.certificate.reset();
    own.tlsSettings.key.reset();
    return own;
}

/// A pattern is for the host, or for the host with its port.
bool Targets::IsAllowed(const std::string& host) const {
    if (allowedHosts_.empty()) {
        return false;
    }
    try {
        const ServerName server = ParseServerName(host);
        const std::string withPort = server.host + (server.port ? ':' + std::to_string(*server.port) : std::string());
        return std::any_of(allowedHosts_.begin(), allowedHosts_.end(), [&](const std::string& pattern) {
            return Matches(pattern, server.host) || Matches(pattern, withPort);
        });
    } catch (const Failure&) {
        return false;
    }
}

/// With the mutex locked.
void Targets::LeaveIdle() {
    const auto oldest = Target::Clock::now() - limits_.idleLife;
    for (auto target = targets_.begin(); target != targets_.end();) {
        const bool isIdle = target->second->LastUse() < oldest && !target->second->IsBusy();
        target = isIdle ? targets_.erase(target) : std::next(target);
    }
}

Targets::Counts Targets::Count() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    Counts counts{targets_.size(), 0, 0};
    for (const auto& [name, target] : targets_) {
        counts.busy += target->IsBusy() ? 1 : 0;
        counts.waiting += target->WaitingCount();
    }
    return counts;
}

} // namespace cimhttp
