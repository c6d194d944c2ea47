#include "model/TCimHTTPMethodDecl.h"

#include "convert/CoreLog.h"
#include "convert/NormalName.h"
#include "host/TVYXException.h"
#include "model/TCimHTTPClass.h"
#include "model/TCimHTTPParameterDecl.h"

namespace NQORVYX20 {

TCimHTTPMethodDecl::TCimHTTPMethodDecl(boost::shared_ptr<TCimHTTPClass> cls, const std::string& name,
                                       TCIMValue::TCIMType returnType)
    : TCimHTTPDeclaration(name, TCimHTTPClass::NamesOf(cls.get())), class_(cls), returnType_(returnType) {}

TCimHTTPMethodDecl::~TCimHTTPMethodDecl() = default;

void TCimHTTPMethodDecl::AddToClass(TCIMContext /*context*/) {
    boost::shared_ptr<TCimHTTPClass>(class_)->AddMethodDecl(shared_from_this());
}

boost::shared_ptr<ICIMClass> TCimHTTPMethodDecl::GetClass(TCIMContext /*context*/) const {
    return boost::shared_ptr<TCimHTTPClass>(class_);
}

TCIMValue::TCIMType TCimHTTPMethodDecl::GetReturnType(TCIMContext /*context*/) const { return returnType_; }

boost::shared_ptr<ICIMParameterDecl>
TCimHTTPMethodDecl::AllocateParameterDecl(const std::string& name, TCIMValue::TCIMType type, TCIMContext /*context*/) {
    return boost::make_shared<TCimHTTPParameterDecl>(shared_from_this(), name, type);
}

boost::shared_ptr<ICIMParameterDecl> TCimHTTPMethodDecl::GetParameterDecl(const std::string& name,
                                                                          TCIMContext /*context*/) const {
    auto parameter = parameters_.Find(NormalizeName(name, Names()));
    if (!parameter) {
        throw TVYXException(TVYXStatusCode::eNotFound);
    }
    return parameter;
}

void TCimHTTPMethodDecl::EnumerateParameterDecls(boost::function<bool(boost::shared_ptr<ICIMParameterDecl>)>& callback,
                                                 TCIMContext /*context*/) const {
    parameters_.Visit(callback);
}

void TCimHTTPMethodDecl::AddParameterDecl(boost::shared_ptr<TCimHTTPParameterDecl> parameter) {
    const std::string& name = parameter->GetName(TCIMContext());
    if (!parameters_.Add(NormalizeName(name, Names()), parameter)) {
        // Those who search the log know this text, which is the one for properties.
        LogError("Inmem: Attempt to add property " + name + " to method " + GetName(TCIMContext()) +
                 ": already exists");
        throw TVYXException(TVYXStatusCode::eAlreadyExists);
    }
}

void TCimHTTPMethodDecl::RemoveParameterDecl(boost::shared_ptr<TCimHTTPParameterDecl> parameter) {
    parameters_.Remove(NormalizeName(parameter->GetName(TCIMContext()), Names()));
}

} // namespace NQORVYX20
