#include "display/DisplayQualifiers.h"

#include "convert/NormalName.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "host/TVYXException.h"

#include <utility>

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

} // namespace

DisplayQualifiers::TName::TName(const char* name) : given_(name), normalized_(NormalizeName(given_)) {}

DisplayQualifiers::DisplayQualifiers(boost::shared_ptr<ICIMPropertyDecl const> declaration, TLookup lookup)
    : declaration_(std::move(declaration)), lookup_(lookup) {}

bool DisplayQualifiers::Has(const TName& name) const { return Find(name) != nullptr; }

std::optional<std::string> DisplayQualifiers::GetString(const TName& name) const {
    const auto qualifier = Find(name);
    return qualifier && qualifier->GetType(TCIMContext()) == ECIMType::eCIMString
               ? std::optional<std::string>(qualifier->GetValue(TCIMContext()))
               : std::nullopt;
}

std::optional<unsigned char> DisplayQualifiers::GetUint8(const TName& name) const {
    const auto qualifier = Find(name);
    return qualifier && qualifier->GetType(TCIMContext()) == ECIMType::eCIMUint8
               ? std::optional<unsigned char>(qualifier->GetValue(TCIMContext()))
               : std::nullopt;
}

std::optional<std::vector<std::string>> DisplayQualifiers::GetTexts(const TName& name) const {
    const auto qualifier = Find(name);
    if (!qualifier || !qualifier->GetValue(TCIMContext()).IsArray()) {
        return std::nullopt;
    }
    const std::vector<TCIMValue>& elements = qualifier->GetValue(TCIMContext());
    std::vector<std::string> texts;
    texts.reserve(elements.size());
    for (const TCIMValue& element : elements) {
        texts.push_back(element.ToString(10));
    }
    return texts;
}

boost::shared_ptr<ICIMQualifier> DisplayQualifiers::Find(const TName& name) const {
    auto qualifier = LookUp(name);
    return qualifier && !qualifier->GetValue(TCIMContext()).IsNull() ? qualifier : nullptr;
}

boost::shared_ptr<ICIMQualifier> DisplayQualifiers::LookUp(const TName& name) const {
    if (lookup_ != nullptr) {
        return lookup_(*declaration_, name.Normalized());
    }
    try {
        return declaration_->GetQualifier(name.Given(), TCIMContext());
    } catch (const TVYXException& exception) {
        if (exception.GetStatusCode().GetCode() != TVYXStatusCode::eNotFound) {
            throw TVYXException(exception.GetStatusCode()); // the code alone, whatever the declaration throws
        }
        return {};
    }
}

} // namespace NQORVYX20
