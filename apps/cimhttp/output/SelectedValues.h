#pragma once

#include "HostTypes.h"
#include "output/PropertySelector.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace cimhttp {

/// The values of the selected properties, instance after instance. What is to be known of a property beside its value
/// is made once for the instances of a class.
class SelectedValues {
  public:
    using Declaration = boost::shared_ptr<NQORVYX20::ICIMPropertyDecl const>;

    /// The place of the property among the declarations, and the value, which is valid during the call.
    using Take = std::function<void(std::size_t place, const NQORVYX20::TCIMValue& value)>;

    explicit SelectedValues(PropertySelector selector) : selector_(std::move(selector)) {}

    /// Turns to an instance. True when the selected declarations are not those of the instance before.
    bool TurnTo(NQORVYX20::ICIMInstance& instance);

    /// The selected properties that the instance's class declares, in the order in which they are wanted.
    const std::vector<Declaration>& Declarations() const { return declarations_; }

    const NQORVYX20::ICIMClass& Class() const { return *class_; }

    /// Calls back once per declaration, in their order.
    void Visit(const Take& take) const;

  private:
    std::size_t VisitInOrder(const Take& take) const;

    PropertySelector selector_;
    boost::shared_ptr<NQORVYX20::ICIMClass> class_; // of the instance, and since most have one class, of those before
    std::vector<Declaration> declarations_;
    bool areMost_ = false; // of those of the class
    NQORVYX20::ICIMInstance* instance_ = nullptr;
};

} // namespace cimhttp
