#pragma once

#include "commands/InstanceFilter.h"
#include "output/InstanceProperties.h"
#include "selection/SortOrder.h"

#include <string>
#include <vector>

namespace cimhttp {

/// What a command line asks for of the instances of a class: `--property`, `--where` and `--sort`.
class InstanceQuery {
  public:
    /// `properties` has texts such as `Name,Size`; none for all properties. Throws as InstanceFilter and SortOrder do.
    InstanceQuery(const std::vector<std::string>& properties, const std::vector<std::string>& conditions,
                  const std::vector<std::string>& order = {});

    /// Whether properties were asked for by name.
    bool NamesProperties() const { return !names_.empty(); }

    /// Whether an order was asked for.
    bool IsOrdered() const { return !order_.IsEmpty(); }

    /// The names of all properties that the answer needs: those to show and those that conditions and the order are
    /// about. None for all that there are.
    std::vector<std::string> NeededNames() const;

    /// Throws Failure(kUsage) for a name that is none of the class's properties, and as InstanceFilter::Check does.
    void CheckNames(const Properties& ofClass, const std::string& className) const;

    /// The properties that were asked for, in the order of their names, or all. Throws as CheckNames does.
    Properties Shown(const Properties& ofClass, const std::string& className) const;

    /// The instances that meet the conditions, in the order that was asked for.
    InstanceFilter::Selection Selected(Instances instances, const ValueTexts& texts) const;

  private:
    Instances Sorted(const Instances& instances) const;

    std::vector<std::string> names_;
    InstanceFilter filter_;
    SortOrder order_;
};

} // namespace cimhttp
