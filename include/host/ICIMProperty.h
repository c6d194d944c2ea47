#pragma once

#include "host/TCIMContext.h"
#include "host/TCIMValue.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace NQORVYX20 {

class ICIMPropertyDecl;

/// The value of a property of an instance or class, with a previous value beside it.
class ICIMProperty {
  public:
    virtual ~ICIMProperty() = default;

    /// The declared type, whatever value is held.
    virtual TCIMValue::TCIMType GetType(TCIMContext context) const = 0;
    virtual bool IsArray(TCIMContext context) const = 0;

    /// True when the property has no value of its own and shows the declaration's default.
    virtual bool IsDefaultValue(TCIMContext context) const = 0;

    /// The value, or the declaration's default. Valid until the property is changed or destroyed.
    virtual const TCIMValue& GetValue(TCIMContext context) const = 0;

    /// Throws TVYXException eTypeMismatch, leaving the value as it was, when the type is not the declared one.
    virtual void SetValue(const TCIMValue& value, TCIMContext context) = 0;

    /// True when the value was not set on this property but comes from elsewhere, such as the declaration.
    virtual bool GetPropagated(TCIMContext context) const = 0;
    virtual boost::shared_ptr<ICIMPropertyDecl const> GetDeclaration(TCIMContext context) const = 0;

    /// Equal: the same declaration and equal values. Less: by declaration, then by value.
    virtual bool operator==(ICIMProperty& other) const = 0;
    virtual bool operator<(ICIMProperty& other) const = 0;
    virtual ICIMProperty& operator=(const ICIMProperty& other) = 0;

    /// The previous value, or the current one when none was ever set.
    virtual const TCIMValue& GetPrevValue() const = 0;

    /// Throws TVYXException eTypeMismatch when the type is not the declared one; null of any type is accepted, and kept
    /// as it is.
    virtual void SetPrevValue(const TCIMValue& value) = 0;

    /// Makes the previous value a null value without a type.
    virtual void SetPrevValue() = 0;

    /// True once a previous value was set.
    virtual bool IsPrevValueDifferent() const = 0;

    /// The value as text for people.
    virtual std::string ToString() const = 0;
    virtual std::string PrevValueToString() const = 0;

    /// The texts of an array's elements; one text for a scalar.
    virtual std::vector<std::string> ToStringVector() const = 0;

  protected:
    ICIMProperty() = default;
    ICIMProperty(const ICIMProperty&) = default;
};

} // namespace NQORVYX20
