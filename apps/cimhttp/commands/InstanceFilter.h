#pragma once

#include <string>
#include <vector>

namespace NQORVYX20 {
class ICIMClass;
class ICIMInstance;
} // namespace NQORVYX20

namespace cimhttp {

class PluginAccess;

/// Selects instances by conditions like `EnabledState=enabled`: the property's value, as it is or as people read it,
/// must match the pattern behind the sign, without regard to case; of an array, one of its elements. Null matches the
/// empty pattern only.
class InstanceFilter {
  public:
    /// Throws Failure(kUsage) for a condition without a sign or with a property that the class does not have.
    InstanceFilter(const std::vector<std::string>& conditions, const NQORVYX20::ICIMClass& cls);

    /// Whether all conditions hold.
    bool Accepts(const NQORVYX20::ICIMInstance& instance, const PluginAccess& access) const;

  private:
    struct Condition {
        std::string property;
        std::string pattern;
    };

    std::vector<Condition> conditions_;
};

} // namespace cimhttp
