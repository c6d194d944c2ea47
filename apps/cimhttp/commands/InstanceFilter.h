#pragma once

#include <string>
#include <vector>

#include "output/InstanceListing.h"

namespace cimhttp {

/// Selects instances by conditions like `EnabledState=enabled`: the property's value, as it is or as people read it,
/// must match the pattern behind the sign, without regard to case; of an array, one of its elements. Null matches the
/// empty pattern only.
class InstanceFilter {
  public:
    /// Throws Failure(kUsage) for a condition without a sign or with a property that the class does not have.
    InstanceFilter(const std::vector<std::string>& conditions, const NQORVYX20::ICIMClass& cls);

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
