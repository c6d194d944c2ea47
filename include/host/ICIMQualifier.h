#pragma once

#include "host/ICIMQualifierDecl.h"
#include "host/TCIMContext.h"
#include "host/TCIMValue.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class ICIMNamedElement;

/// A qualifier on an element: a declaration, a value and a flavor.
class ICIMQualifier {
  public:
    virtual ~ICIMQualifier() = default;

    virtual void Validate(TCIMContext context) const = 0;

    /// Adds the qualifier to the element that it was allocated for, by the rules of ICIMNamedElement::AddQualifier.
    virtual void AddToClassOrProperty(TCIMContext context) const = 0;
    virtual void RemoveFromClassOrProperty(TCIMContext context) = 0;

    /// The name of the declaration.
    virtual const std::string& GetName(TCIMContext context) const = 0;
    virtual boost::shared_ptr<ICIMNamedElement const> GetClassOrProperty(TCIMContext context) const = 0;
    virtual TCIMValue::TCIMType GetType(TCIMContext context) const = 0;
    virtual bool IsArray(TCIMContext context) const = 0;
    virtual boost::shared_ptr<ICIMQualifierDecl const> GetDeclaration(TCIMContext context) const = 0;
    virtual const TCIMValue& GetValue(TCIMContext context) const = 0;
    virtual void SetValue(const TCIMValue& value, TCIMContext context) = 0;

    /// Sets the given bits and leaves the others.
    virtual void SetFlavor(ICIMQualifierDecl::EFlavor flavor, TCIMContext context) = 0;

    /// Clears the given bits and leaves the others.
    virtual void UnsetFlavor(ICIMQualifierDecl::EFlavor flavor, TCIMContext context) = 0;
    virtual ICIMQualifierDecl::EFlavor GetFlavor(TCIMContext context) const = 0;

    /// Qualifiers are compared by name, without regard to case.
    virtual bool operator==(ICIMQualifier& other) const = 0;
    virtual bool operator<(ICIMQualifier& other) const = 0;

    /// True when the qualifier was taken over from another element and not changed since.
    virtual bool GetPropagated(TCIMContext context) const = 0;
    virtual ICIMQualifier& operator=(const ICIMQualifier& other) = 0;

  protected:
    ICIMQualifier() = default;
    ICIMQualifier(const ICIMQualifier&) = default;
};

} // namespace NQORVYX20
