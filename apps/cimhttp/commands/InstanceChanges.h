#pragma once

#include "host/TCIMValue.h"
#include "output/InstanceProperties.h"

#include <string>
#include <vector>

namespace cimhttp {

/// What is different about an instance between two readings of its class.
struct InstanceChange {
    enum class Kind { kNew, kGone, kChanged };

    /// A property with its values; null where the instance's class did not declare it.
    struct Difference {
        std::string name;
        boost::shared_ptr<NQORVYX20::ICIMPropertyDecl const> declaration;
        NQORVYX20::TCIMValue before;
        NQORVYX20::TCIMValue now;
    };

    Kind kind;
    std::string path;
    boost::shared_ptr<NQORVYX20::ICIMInstance> instance; ///< as it is now, or was before it went
    boost::shared_ptr<NQORVYX20::ICIMInstance> earlier;  ///< as it was before it changed; otherwise null
    std::vector<Difference> differences;                 ///< of an instance that has changed
};

/// The changes in these properties from one reading to a later one, in the order of the paths.
std::vector<InstanceChange> ChangesBetween(const Instances& earlier, const Instances& later,
                                           const std::vector<std::string>& properties);

} // namespace cimhttp
