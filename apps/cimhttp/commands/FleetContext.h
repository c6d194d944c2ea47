#pragma once

#include "fleet/ServerList.h"

#include <iosfwd>
#include <vector>

namespace cimhttp {

struct Options;

/// What a command runs with for several servers.
struct FleetContext {
    const Options& options;
    std::vector<FleetServer> servers;
    std::ostream& output;
    std::ostream& errors; ///< other threads may write to the same place: each call of an operator stays together
};

} // namespace cimhttp
