#pragma once

#include "host/ICIMNamedElement.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class ICIMMethodDecl;

/// The declaration of a parameter of a method.
class ICIMParameterDecl : public ICIMNamedElement {
  public:
    virtual void Validate(TCIMContext context) const = 0;

    /// Adds the declaration to the method that it was allocated for. Throws TVYXException eAlreadyExists when the
    /// method has a parameter of that name.
    virtual void AddToMethod(TCIMContext context) = 0;
    virtual const std::string& GetName(TCIMContext context) const = 0;
    virtual boost::shared_ptr<ICIMMethodDecl> GetMethodDecl(TCIMContext context) const = 0;
    virtual TCIMValue::TCIMType GetType(TCIMContext context) const = 0;
    virtual bool IsArray(TCIMContext context) const = 0;

    /// Declarations are compared by name, without regard to case.
    virtual bool operator==(ICIMParameterDecl& other) const = 0;
    virtual bool operator<(ICIMParameterDecl& other) const = 0;
    virtual ICIMParameterDecl& operator=(const ICIMParameterDecl& other) = 0;

  protected:
    ICIMParameterDecl() = default;
    ICIMParameterDecl(const ICIMParameterDecl&) = default;
};

} // namespace NQORVYX20
