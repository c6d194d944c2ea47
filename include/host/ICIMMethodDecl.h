#pragma once

#include "host/ICIMNamedElement.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class ICIMClass;
class ICIMParameterDecl;

/// The declaration of a method in a class.
class ICIMMethodDecl : public ICIMNamedElement {
  public:
    virtual void Validate(TCIMContext context) const = 0;

    /// Adds the declaration to the class that it was allocated for.
    virtual void AddToClass(TCIMContext context) = 0;
    virtual const std::string& GetName(TCIMContext context) const = 0;
    virtual boost::shared_ptr<ICIMClass> GetClass(TCIMContext context) const = 0;
    virtual TCIMValue::TCIMType GetReturnType(TCIMContext context) const = 0;

    /// A parameter of this method. It is not added: ICIMParameterDecl::AddToMethod does that.
    virtual boost::shared_ptr<ICIMParameterDecl>
    AllocateParameterDecl(const std::string& name, TCIMValue::TCIMType type, TCIMContext context) = 0;

    /// The parameter of that name. Throws TVYXException eNotFound when there is none.
    virtual boost::shared_ptr<ICIMParameterDecl> GetParameterDecl(const std::string& name,
                                                                  TCIMContext context) const = 0;

    /// Calls back once per parameter, in the order of their normalised names, until the callback returns false.
    virtual void EnumerateParameterDecls(boost::function<bool(boost::shared_ptr<ICIMParameterDecl>)>& callback,
                                         TCIMContext context) const = 0;

    /// Declarations are compared by name, without regard to case.
    virtual bool operator==(ICIMMethodDecl& other) const = 0;
    virtual bool operator<(ICIMMethodDecl& other) const = 0;
    virtual ICIMMethodDecl& operator=(const ICIMMethodDecl& other) = 0;

  protected:
    ICIMMethodDecl() = default;
    ICIMMethodDecl(const ICIMMethodDecl&) = default;
};

} // namespace NQORVYX20
