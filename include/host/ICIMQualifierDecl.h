#pragma once

#include "host/TCIMContext.h"
#include "host/TCIMValue.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace NQORVYX20 {

class ICIMNamespace;

/// The declaration of a qualifier in a namespace (DSP0004 5.6.1): name, type, default value, scope, flavor.
class ICIMQualifierDecl {
  public:
    /// The kinds of element that may have a qualifier, a bit mask.
    enum EScope : std::uint32_t {
        eScopeNone = 0,
        eScopeClass = 0x01,
        eScopeAssociation = 0x02,
        eScopeIndication = 0x04,
        eScopeProperty = 0x08,
        eScopeReference = 0x10,
        eScopeMethod = 0x20,
        eScopeParameter = 0x40,
        eScopeAny = 0x7f
    };

    /// How a qualifier is inherited, a bit mask.
    enum EFlavor : std::uint32_t {
        eFlavorNone = 0,
        eFlavorEnableOverride = 0x01,
        eFlavorToSubclass = 0x02,
        eFlavorDefaults = 0x03,
        eFlavorTranslatable = 0x04
    };

    virtual ~ICIMQualifierDecl() = default;

    virtual void Validate(TCIMContext context) const = 0;

    /// Enters the declaration into the namespace that it was allocated for.
    virtual void AddToNamespace(TCIMContext context) = 0;
    virtual void RemoveQualifierDecl(TCIMContext context) = 0;
    virtual const std::string& GetName(TCIMContext context) const = 0;
    virtual boost::shared_ptr<ICIMNamespace> GetNamespace(TCIMContext context) const = 0;
    virtual TCIMValue::TCIMType GetType(TCIMContext context) const = 0;
    virtual bool IsArray(TCIMContext context) const = 0;
    virtual const TCIMValue& GetDefaultValue(TCIMContext context) const = 0;
    virtual void SetDefaultValue(const TCIMValue& value, TCIMContext context) = 0;
    virtual EScope GetScope(TCIMContext context) const = 0;

    /// Sets the given bits and leaves the others.
    virtual void SetFlavor(EFlavor flavor, TCIMContext context) = 0;

    /// Clears the given bits and leaves the others.
    virtual void UnsetFlavor(EFlavor flavor, TCIMContext context) = 0;
    virtual EFlavor GetFlavor(TCIMContext context) const = 0;

    /// Declarations are compared by name, without regard to case.
    virtual bool operator==(ICIMQualifierDecl& other) const = 0;
    virtual bool operator<(ICIMQualifierDecl& other) const = 0;
    virtual ICIMQualifierDecl& operator=(const ICIMQualifierDecl& other) = 0;

  protected:
    ICIMQualifierDecl() = default;
    ICIMQualifierDecl(const ICIMQualifierDecl&) = default;
};

} // namespace NQORVYX20
