#pragma once

#include "host/ICIMQualifierDecl.h"
#include "host/TCIMContext.h"
#include "host/TCIMValue.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class ICIMQualifier;

/// An element that carries qualifiers: a class, or a property, method or parameter declaration. Qualifier names are
/// matched without regard to case.
class ICIMNamedElement {
  public:
    virtual ~ICIMNamedElement() = default;

    /// Puts a qualifier on the element. It replaces one of the same name whose flavor enables override; otherwise the
    /// new one must have the same value and flavor, or TVYXException eQualifierConflict is thrown and nothing changes.
    virtual void AddQualifier(boost::shared_ptr<ICIMQualifier> qualifier, TCIMContext context) = 0;

    /// A qualifier for this element with the flavor of its declaration. It is not added.
    virtual boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl const> declaration,
                                                               const TCIMValue& value, TCIMContext context) const = 0;

    /// A qualifier with a flavor of its own. It is not added.
    virtual boost::shared_ptr<ICIMQualifier> AllocateQualifier(boost::shared_ptr<ICIMQualifierDecl const> declaration,
                                                               const TCIMValue& value,
                                                               ICIMQualifierDecl::EFlavor flavor,
                                                               TCIMContext context) const = 0;

    /// The qualifier of that name. When there is none, a class returns an empty pointer, a declaration throws
    /// TVYXException eNotFound; the form with the flag asks without that difference.
    virtual boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, TCIMContext context) const = 0;

    /// Calls back once per qualifier, in the order of their normalised names, until the callback returns false.
    virtual void EnumerateQualifiers(const boost::function<bool(boost::shared_ptr<ICIMQualifier>)>& callback,
                                     TCIMContext context) const = 0;

    /// The qualifier of that name with `found` true, or an empty pointer with `found` false. Does not throw for an
    /// absent qualifier.
    virtual boost::shared_ptr<ICIMQualifier> GetQualifier(const std::string& name, bool& found,
                                                          TCIMContext context) const = 0;
};

} // namespace NQORVYX20
