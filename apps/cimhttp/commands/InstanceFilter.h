#pragma once

#include "output/InstanceProperties.h"
#include "selection/Condition.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace cimhttp {

class ValueTexts;

/// Values with which a condition could not be compared: a date-time whose asterisks leave open when it is, for example.
struct UncomparedValues {
    std::size_t count = 0;
    std::string first; ///< property and value

    void Add(const UncomparedValues& more);

    /// Says so in a line, if there are any.
    void Report(std::ostream& errors) const;
};

/// Selects instances by conditions, all of which must hold.
class InstanceFilter {
  public:
    /// Throws Failure(kUsage) for what is no Condition.
    explicit InstanceFilter(const std::vector<std::string>& conditions);

    /// The names of the properties that the conditions are about.
    std::vector<std::string> PropertyNames() const;

    /// Throws Failure(kUsage) for a name that is none of the class's properties, and for a condition with which its
    /// property cannot be compared.
    void Check(const Properties& ofClass, const std::string& className) const;

    struct Selection {
        Instances instances;
        UncomparedValues uncompared; ///< of instances that are not selected
    };

    /// The instances of which all conditions hold.
    Selection Selected(Instances instances, const ValueTexts& texts) const;

  private:
    bool Accepts(const NQORVYX20::ICIMInstance& instance, const ValueTexts& texts, UncomparedValues& uncompared) const;

    std::vector<Condition> conditions_;
};

} // namespace cimhttp
