#include "model/TCimHTTPQualifierDecl.h"

#include "model/SchemaNamespace.h"

namespace NQORVYX20 {

TCimHTTPQualifierDecl::TCimHTTPQualifierDecl(boost::shared_ptr<SchemaNamespace> nameSpace, const std::string& name,
                                             const TCIMValue& defaultValue, EScope scope, EFlavor flavor)
    : namespace_(nameSpace),
      name_(name),
      names_(nameSpace ? nameSpace->Names() : NameRule::kHost),
      defaultValue_(defaultValue),
      scope_(scope),
      flavor_(flavor) {}

void TCimHTTPQualifierDecl::Validate(TCIMContext /*context*/) const {}

void TCimHTTPQualifierDecl::AddToNamespace(TCIMContext /*context*/) {
    boost::shared_ptr<SchemaNamespace>(namespace_)->AddQualifierDecl(shared_from_this());
}

void TCimHTTPQualifierDecl::RemoveQualifierDecl(TCIMContext /*context*/) {}

const std::string& TCimHTTPQualifierDecl::GetName(TCIMContext /*context*/) const { return name_; }

boost::shared_ptr<ICIMNamespace> TCimHTTPQualifierDecl::GetNamespace(TCIMContext /*context*/) const {
    return boost::shared_ptr<SchemaNamespace>(namespace_);
}

TCIMValue::TCIMType TCimHTTPQualifierDecl::GetType(TCIMContext /*context*/) const { return defaultValue_.GetType(); }

bool TCimHTTPQualifierDecl::IsArray(TCIMContext /*context*/) const { return defaultValue_.IsArray(); }

const TCIMValue& TCimHTTPQualifierDecl::GetDefaultValue(TCIMContext /*context*/) const { return defaultValue_; }

void TCimHTTPQualifierDecl::SetDefaultValue(const TCIMValue& value, TCIMContext /*context*/) { defaultValue_ = value; }

ICIMQualifierDecl::EScope TCimHTTPQualifierDecl::GetScope(TCIMContext /*context*/) const { return scope_; }

void TCimHTTPQualifierDecl::SetFlavor(EFlavor flavor, TCIMContext /*context*/) {
    flavor_ = static_cast<EFlavor>(flavor_ | flavor);
}

void TCimHTTPQualifierDecl::UnsetFlavor(EFlavor flavor, TCIMContext /*context*/) {
    flavor_ = static_cast<EFlavor>(flavor_ & ~flavor);
}

ICIMQualifierDecl::EFlavor TCimHTTPQualifierDecl::GetFlavor(TCIMContext /*context*/) const { return flavor_; }

bool TCimHTTPQualifierDecl::operator==(ICIMQualifierDecl& other) const {
    return NormalizeName(name_, names_) == NormalizeName(other.GetName(TCIMContext()), names_);
}

bool TCimHTTPQualifierDecl::operator<(ICIMQualifierDecl& other) const {
    return NormalizeName(name_, names_) < NormalizeName(other.GetName(TCIMContext()), names_);
}

ICIMQualifierDecl& TCimHTTPQualifierDecl::operator=(const ICIMQualifierDecl& /*other*/) { return *this; }

} // namespace NQORVYX20
