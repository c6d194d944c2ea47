#pragma once

#include "monitoring/InstanceName.h"

#include <algorithm>
#include <string>
#include <vector>

namespace cimhttp {

/// What the command line asks of a check.
struct CheckRequest {
    std::string className;
    std::vector<std::string> conditions; ///< see InstanceFilter
    std::vector<std::string> warnings;   ///< see Threshold
    std::vector<std::string> criticals;
    std::vector<std::string> ignored; ///< patterns, see InstanceName::Matches

    bool Ignores(const InstanceName& name) const {
        return std::any_of(ignored.begin(), ignored.end(), [&](const auto& pattern) { return name.Matches(pattern); });
    }
};

} // namespace cimhttp
