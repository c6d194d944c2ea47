#pragma once

#include "HostTypes.h"
#include "output/InstanceProperties.h"

#include <string>
#include <vector>

namespace cimhttp {

/// What to call an instance in the output of a check, and by what a user may mean it.
class InstanceName {
  public:
    explicit InstanceName(const NQORVYX20::ICIMInstance& instance);

    /// Whether a key is about the instance itself, not about its class or the system that it belongs to.
    static bool IsOwnKey(const std::string& key);

    /// Those of a class's properties that names are made of.
    static std::vector<std::string> PropertiesIn(const Properties& ofClass);

    /// ElementName, else Name, else DeviceID, of the properties first and then of the keys, else the path.
    const std::string& Label() const { return label_; }

    /// The path without the namespace and without keys that name classes and the system.
    const std::string& ShortPath() const { return shortPath_; }

    /// Whether a pattern matches the label, one of the names, a key's value, the class or the path.
    bool Matches(const std::string& pattern) const;

  private:
    void AddName(const std::string& name);

    std::string label_;
    std::string shortPath_;
    std::vector<std::string> names_;
};

} // namespace cimhttp
