#pragma once

#include "Options.h"
#include "connection/Plugin.h"
#include "exporter/ScrapeLimits.h"
#include "exporter/Target.h"
#include "exporter/TargetPlaces.h"

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

/// The servers that may be asked for: those that have a name among the user's connections, which are looked up each
/// time, and hosts that match a pattern, for which no user and no password is used. For several threads.
class Targets {
  public:
    /// `options` are those of the command line; what they say of servers is used for named ones. Everything must
    /// outlive the object.
    Targets(const Plugin& plugin, const Options& options, const ScrapeLimits& limits,
            std::vector<std::string> allowedHosts);

    /// The server of a name. Null where there is none, or it is not allowed. Throws Failure(kUsage) where the
    /// connections cannot be read.
    std::shared_ptr<Target> Find(const std::string& name);

    /// The names of the user's connections. Throws so, too.
    static std::vector<std::string> Names();

    struct Counts {
        std::size_t kept = 0;
        std::size_t busy = 0;    ///< of them, those that are being read
        std::size_t waiting = 0; ///< requests that wait for a reading
    };
    Counts Count() const;

  private:
    std::optional<Options> OptionsFor(const std::string& name) const;
    bool IsAllowed(const std::string& host) const;
    void LeaveIdle();

    const Plugin& plugin_;
    const Options& options_;
    const ScrapeLimits limits_;
    const std::vector<std::string> allowedHosts_;
    TargetPlaces places_;
    mutable std::mutex mutex_;
    std::map<std::string, std::shared_ptr<Target>> targets_;
};

} // namespace cimhttp
