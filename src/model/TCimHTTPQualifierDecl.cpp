#include "model/TCimHTTPQualifierDecl.h"

#include "model/Reading.h"
#include "provider/TCimHTTPNamespace.h"

namespace NQORVYX20 {

TCimHTTPQualifierDecl::TCimHTTPQualifierDecl(boost::shared_ptr<TCimHTTPNamespace> nameSpace, const std::string& name,
                                             const TCIMValue& defaultValue, EScope scope, EFlavor flavor)
    : fNamespace(nameSpace),
      fName(name),
      fNames(nameSpace ? nameSpace->GetReading()->Names() : NameRule::kHost),
      fDefaultValue(defaultValue),
      fScope(scope),
      fFlavor(flavor) {}

void TCimHTTPQualifierDecl::Validate(TCIMContext /*context*/) const {}

void TCimHTTPQualifierDecl::AddToNamespace(TCIMContext /*context*/) {
    boost::shared_ptr<TCimHTTPNamespace>(fNamespace)->AddQualifierDecl(shared_from_this());
}

void TCimHTTPQualifierDecl::RemoveQualifierDecl(TCIMContext /*context*/) {}

const std::string& TCimHTTPQualifierDecl::GetName(TCIMContext /*context*/) const { return fName; }

boost::shared_ptr<ICIMNamespace> TCimHTTPQualifierDecl::GetNamespace(TCIMContext /*context*/) const {
    return boost::shared_ptr<TCimHTTPNamespace>(fNamespace);
}

TCIMValue::TCIMType TCimHTTPQualifierDecl::GetType(TCIMContext /*context*/) const { return fDefaultValue.GetType(); }

bool TCimHTTPQualifierDecl::IsArray(TCIMContext /*context*/) const { return fDefaultValue.IsArray(); }

const TCIMValue& TCimHTTPQualifierDecl::GetDefaultValue(TCIMContext /*context*/) const { return fDefaultValue; }

void TCimHTTPQualifierDecl::SetDefaultValue(const TCIMValue& value, TCIMContext /*context*/) { fDefaultValue = value; }

ICIMQualifierDecl::EScope TCimHTTPQualifierDecl::GetScope(TCIMContext /*context*/) const { return fScope; }

void TCimHTTPQualifierDecl::SetFlavor(EFlavor flavor, TCIMContext /*context*/) {
    fFlavor = static_cast<EFlavor>(fFlavor | flavor);
}

void TCimHTTPQualifierDecl::UnsetFlavor(EFlavor flavor, TCIMContext /*context*/) {
    fFlavor = static_cast<EFlavor>(fFlavor & ~flavor);
}

ICIMQualifierDecl::EFlavor TCimHTTPQualifierDecl::GetFlavor(TCIMContext /*context*/) const { return fFlavor; }

bool TCimHTTPQualifierDecl::operator==(ICIMQualifierDecl& other) const {
    return NormalizeName(fName, fNames) == NormalizeName(other.GetName(TCIMContext()), fNames);
}

bool TCimHTTPQualifierDecl::operator<(ICIMQualifierDecl& other) const {
    return NormalizeName(fName, fNames) < NormalizeName(other.GetName(TCIMContext()), fNames);
}

ICIMQualifierDecl& TCimHTTPQualifierDecl::operator=(const ICIMQualifierDecl& /*other*/) { return *this; }

} // namespace NQORVYX20
