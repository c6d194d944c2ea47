#pragma once

#include <string>
#include <vector>

#include "commands/InstanceFilter.h"
#include "output/InstanceProperties.h"

namespace cimhttp {

/// What a command line asks for of the instances of a class: `--property` and `--where`.
class InstanceQuery {
  public:
    /// `properties` has texts such as `Name,Size`; none for all properties. Throws as InstanceFilter does.
    InstanceQuery(const std::vector<std::string>& properties, const std::vector<std::string>& conditions);

    /// Whether properties were asked for by name.
    bool NamesProperties() const { return !names_.empty(); }

    /// The names of all properties that the answer needs: those to show and those that conditions are about. None for
    /// all that there are.
    std::vector<std::string> NeededNames() const;

    /// Throws Failure(kUsage) for a name that is none of the class's properties.
    void CheckNames(const Properties& of_class, const std::string& class_name) const;

    /// The properties that were asked for, in the order of their names, or all. Throws as CheckNames does.
    Properties Shown(const Properties& of_class, const std::string& class_name) const;

    const InstanceFilter& Filter() const { return filter_; }

  private:
    std::vector<std::string> names_;
    InstanceFilter filter_;
};

} // namespace cimhttp
