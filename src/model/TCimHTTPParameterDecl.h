#pragma once

#include "host/ICIMParameterDecl.h"
#include "model/TCimHTTPDeclaration.h"

#include <boost/weak_ptr.hpp>

namespace NQORVYX20 {

class TCimHTTPMethodDecl;

/// The declaration of a parameter of a method. It refers to its method weakly: operations that need the method throw
/// boost::bad_weak_ptr when it has gone.
class TCimHTTPParameterDecl : public TCimHTTPDeclaration<TCimHTTPParameterDecl, ICIMParameterDecl> {
  public:
    static constexpr const char* kKind = "parameter";

    TCimHTTPParameterDecl(boost::shared_ptr<TCimHTTPMethodDecl> method, const std::string& name,
                          TCIMValue::TCIMType type);

    using TCimHTTPDeclaration::operator=;

    void AddToMethod(TCIMContext context) override;
    boost::shared_ptr<ICIMMethodDecl> GetMethodDecl(TCIMContext context) const override;
    TCIMValue::TCIMType GetType(TCIMContext context) const override;
    bool IsArray(TCIMContext context) const override;

    /// The qualifier of that name, or an empty pointer.
    boost::shared_ptr<TCimHTTPQualifier> LookupQual(const std::string& name) const { return FindQualifier(name); }

  private:
    boost::weak_ptr<TCimHTTPMethodDecl> method_;
    TCIMValue::TCIMType type_;
};

} // namespace NQORVYX20
