#pragma once

#include "host/ICIMNamedElement.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class ICIMClass;

/// The declaration of a property in a class. The default value carries the declared type.
class ICIMPropertyDecl : public ICIMNamedElement {
  public:
    virtual void Validate(TCIMContext context) const = 0;

    /// Adds the declaration to the class that it was allocated for, by the rules of ICIMClass::AddPropertyDecl.
    virtual void AddToClass(TCIMContext context) = 0;

    /// Takes the declaration out of its class. A class that keeps its declarations ignores it.
    virtual void RemoveFromClass(TCIMContext context) = 0;
    virtual const std::string& GetName(TCIMContext context) const = 0;
    virtual boost::shared_ptr<ICIMClass> GetClass(TCIMContext context) const = 0;
    virtual TCIMValue::TCIMType GetType(TCIMContext context) const = 0;
    virtual bool IsArray(TCIMContext context) const = 0;
    virtual const TCIMValue& GetDefaultValue(TCIMContext context) const = 0;

    /// Replaces the default value and with it the declared type.
    virtual void SetDefaultValue(const TCIMValue& value, TCIMContext context) = 0;

    /// Declarations are compared by name, without regard to case.
    virtual bool operator==(ICIMPropertyDecl& other) const = 0;
    virtual bool operator<(ICIMPropertyDecl& other) const = 0;
    virtual ICIMPropertyDecl& operator=(const ICIMPropertyDecl& other) = 0;

  protected:
    ICIMPropertyDecl() = default;
    ICIMPropertyDecl(const ICIMPropertyDecl&) = default;
};

} // namespace NQORVYX20
