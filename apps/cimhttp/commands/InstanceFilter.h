#pragma once

#include <string>
#include <vector>

#include "output/InstanceProperties.h"

namespace cimhttp {

class PluginAccess;

/// Selects instances by conditions like `EnabledState=enabled`: the property's value, as it is or as people read it,
/// must match the pattern behind the sign, without regard to case; of an array, one of its elements. Null, and a
/// property that the instance's class does not declare, matches the empty pattern only.
class InstanceFilter {
  public:
    /// Throws Failure(kUsage) for a condition without a sign.
    explicit InstanceFilter(const std::vector<std::string>& conditions);

    /// The names of the properties that the conditions are about.
    std::vector<std::string> PropertyNames() const;

    /// The instances of which all conditions hold.
    Instances Selected(Instances instances, const PluginAccess& access) const;

  private:
    bool Accepts(const NQORVYX20::ICIMInstance& instance, const PluginAccess& access) const;

    struct Condition {
        std::string property;
        std::string pattern;
    };

    std::vector<Condition> conditions_;
};

} // namespace cimhttp
