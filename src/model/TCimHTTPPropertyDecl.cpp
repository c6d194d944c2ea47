#include "model/TCimHTTPPropertyDecl.h"

#include "model/DisplayQualifiers.h"
#include "model/TCimHTTPClass.h"
#include "model/ValueMapTable.h"

namespace NQORVYX20 {

TCimHTTPPropertyDecl::TCimHTTPPropertyDecl(boost::shared_ptr<TCimHTTPClass> cls, const std::string& name,
                                           const TCIMValue& defaultValue)
    : TCimHTTPDeclaration(name), fClass(cls), fDefaultValue(defaultValue) {}

TCimHTTPPropertyDecl::TCimHTTPPropertyDecl(boost::shared_ptr<TCimHTTPClass const> /*cls*/,
                                           boost::shared_ptr<ICIMPropertyDecl const> /*other*/)
    : TCimHTTPDeclaration(std::string()) {}

void TCimHTTPPropertyDecl::AddToClass(TCIMContext /*context*/) {
    boost::shared_ptr<TCimHTTPClass>(fClass)->AddPropertyDecl(shared_from_this());
}

void TCimHTTPPropertyDecl::RemoveFromClass(TCIMContext /*context*/) {}

boost::shared_ptr<ICIMClass> TCimHTTPPropertyDecl::GetClass(TCIMContext /*context*/) const {
    return boost::shared_ptr<TCimHTTPClass>(fClass);
}

TCIMValue::TCIMType TCimHTTPPropertyDecl::GetType(TCIMContext /*context*/) const { return fDefaultValue.GetType(); }

bool TCimHTTPPropertyDecl::IsArray(TCIMContext /*context*/) const { return fDefaultValue.IsArray(); }

const TCIMValue& TCimHTTPPropertyDecl::GetDefaultValue(TCIMContext /*context*/) const { return fDefaultValue; }

void TCimHTTPPropertyDecl::SetDefaultValue(const TCIMValue& value, TCIMContext /*context*/) { fDefaultValue = value; }

boost::shared_ptr<const ValueMapTable> TCimHTTPPropertyDecl::GetValueMapTable() const {
    static const std::string kValues = "values";
    static const std::string kValueMap = "valuemap";
    const auto values = LookupNormalizedQualifier(kValues);
    const auto entries = values ? LookupNormalizedQualifier(kValueMap) : nullptr;
    if (!entries) {
        return {};
    }
    if (!fValueMap.IsMadeFrom(values, entries)) {
        fValueMap.Keep(values, entries, MakeValueMapTable(DisplayQualifiers(shared_from_this())));
    }
    return fValueMap.Map();
}

} // namespace NQORVYX20
