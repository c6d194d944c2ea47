#pragma once

#include "host/ICIMMethodDecl.h"
#include "model/NamedEntries.h"
#include "model/TCimHTTPDeclaration.h"

#include <boost/weak_ptr.hpp>

namespace NQORVYX20 {

class TCimHTTPClass;
class TCimHTTPParameterDecl;

/// The declaration of a method in a class. Its parameters are kept by normalised name, not in the order of the remote
/// declaration. It refers to its class weakly: operations that need the class throw boost::bad_weak_ptr when it has
/// gone.
class TCimHTTPMethodDecl : public TCimHTTPDeclaration<TCimHTTPMethodDecl, ICIMMethodDecl> {
  public:
    static constexpr const char* kKind = "method";

    TCimHTTPMethodDecl(boost::shared_ptr<TCimHTTPClass> cls, const std::string& name, TCIMValue::TCIMType returnType);
    ~TCimHTTPMethodDecl() override;

    using TCimHTTPDeclaration::operator=;

    void AddToClass(TCIMContext context) override;
    boost::shared_ptr<ICIMClass> GetClass(TCIMContext context) const override;
    TCIMValue::TCIMType GetReturnType(TCIMContext context) const override;
    boost::shared_ptr<ICIMParameterDecl> AllocateParameterDecl(const std::string& name, TCIMValue::TCIMType type,
                                                               TCIMContext context) override;
    boost::shared_ptr<ICIMParameterDecl> GetParameterDecl(const std::string& name, TCIMContext context) const override;
    void EnumerateParameterDecls(boost::function<bool(boost::shared_ptr<ICIMParameterDecl>)>& callback,
                                 TCIMContext context) const override;

    /// Throws TVYXException eAlreadyExists, after a line in the log, when there is a parameter of that name.
    void AddParameterDecl(boost::shared_ptr<TCimHTTPParameterDecl> parameter);

    /// Removes the parameter of the same name, if there is one.
    void RemoveParameterDecl(boost::shared_ptr<TCimHTTPParameterDecl> parameter);

    using TCimHTTPDeclaration::Names;

  private:
    boost::weak_ptr<TCimHTTPClass> class_;
    TCIMValue::TCIMType returnType_;
    NamedEntries<TCimHTTPParameterDecl> parameters_;
};

} // namespace NQORVYX20
