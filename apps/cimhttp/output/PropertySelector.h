#pragma once

#include "output/InstanceProperties.h"

#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

/// Which properties are shown of instances that may be of several classes.
class PropertySelector {
  public:
    enum class Order { kGiven, kByName }; ///< given: by the names, or keys first

    /// All of each instance's own class.
    explicit PropertySelector(Order order) : order_(order) {}

    /// Those with these names.
    PropertySelector(std::vector<std::string> names, Order order) : names_(std::move(names)), order_(order) {}

    /// The declarations of the instance's own class, as far as it has them. Valid until the next call.
    const Properties& PropertiesFor(const NQORVYX20::ICIMInstance& instance);

  private:
    Properties Selected(const NQORVYX20::ICIMClass& cls) const;

    std::optional<std::vector<std::string>> names_;
    Order order_;
    boost::shared_ptr<NQORVYX20::ICIMClass>
        lastClass_; // whose properties are held, since most instances have one class
    Properties properties_;
};

} // namespace cimhttp
