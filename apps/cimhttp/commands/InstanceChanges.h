#pragma once

#include <string>
#include <vector>

#include "output/InstanceListing.h"

namespace cimhttp {

/// What is different about an instance between two readings of its class.
struct InstanceChange {
    enum class Kind { kNew, kGone, kChanged };

    /// A property, which holds the later value and the earlier one as its previous value.
    struct Difference {
        std::string name;
        boost::shared_ptr<NQORVYX20::ICIMProperty> property;
    };

    Kind kind;
    std::string path;
    std::vector<Difference> differences; ///< of an instance that has changed
};

/// The changes in these properties from one reading to a later one, in the order of the paths. The instances of both
/// must live as long as the result.
std::vector<InstanceChange> ChangesBetween(const Instances& earlier, const Instances& later,
                                           const std::vector<std::string>& properties, const PluginAccess& access);

} // namespace cimhttp
