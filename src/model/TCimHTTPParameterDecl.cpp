#include "model/TCimHTTPParameterDecl.h"

#include "model/TCimHTTPMethodDecl.h"

namespace NQORVYX20 {

TCimHTTPParameterDecl::TCimHTTPParameterDecl(boost::shared_ptr<TCimHTTPMethodDecl> method, const std::string& name,
                                             TCIMValue::TCIMType type)
    : TCimHTTPDeclaration(name, method ? method->Names() : NameRule::kHost), method_(method), type_(type) {}

void TCimHTTPParameterDecl::AddToMethod(TCIMContext /*context*/) {
    boost::shared_ptr<TCimHTTPMethodDecl>(method_)->AddParameterDecl(shared_from_this());
}

boost::shared_ptr<ICIMMethodDecl> TCimHTTPParameterDecl::GetMethodDecl(TCIMContext /*context*/) const {
    return boost::shared_ptr<TCimHTTPMethodDecl>(method_);
}

TCIMValue::TCIMType TCimHTTPParameterDecl::GetType(TCIMContext /*context*/) const { return type_; }

bool TCimHTTPParameterDecl::IsArray(TCIMContext /*context*/) const {
    return (type_ & TCIMValue::TCIMType::eCIMArrayUnknown) != 0;
}

} // namespace NQORVYX20
