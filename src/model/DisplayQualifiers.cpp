#include "model/DisplayQualifiers.h"

#include <utility>

#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "host/TVYXException.h"
#include "model/StatusCodes.h"

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

bool Holds(const TCIMValue& value, ECIMType type) { return !value.IsNull() && value.GetType() == type; }

} // namespace

DisplayQualifiers::DisplayQualifiers(boost::shared_ptr<ICIMPropertyDecl const> declaration)
    : fDeclaration(std::move(declaration)) {}

bool DisplayQualifiers::Has(const std::string& name) const { return !Find(name).IsNull(); }

std::optional<std::string> DisplayQualifiers::GetString(const std::string& name) const {
    const TCIMValue value = Find(name);
    return Holds(value, ECIMType::eCIMString) ? std::optional(value.ToString(10)) : std::nullopt;
}

std::optional<unsigned char> DisplayQualifiers::GetUint8(const std::string& name) const {
    const TCIMValue value = Find(name);
    return Holds(value, ECIMType::eCIMUint8) ? std::optional(static_cast<unsigned char>(value)) : std::nullopt;
}

std::optional<std::vector<std::string>> DisplayQualifiers::GetTexts(const std::string& name) const {
    const TCIMValue value = Find(name);
    if (value.IsNull() || !value.IsArray()) {
        return std::nullopt;
    }
    const std::vector<TCIMValue>& elements = value;
    std::vector<std::string> texts;
    texts.reserve(elements.size());
    for (const TCIMValue& element : elements) {
        texts.push_back(element.ToString(10));
    }
    return texts;
}

TCIMValue DisplayQualifiers::Find(const std::string& name) const {
    try {
        const auto qualifier = fDeclaration->GetQualifier(name, TCIMContext());
        return qualifier ? qualifier->GetValue(TCIMContext()) : TCIMValue();
    } catch (const TVYXException& exception) {
        if (exception.GetStatusCode().GetCode() != kNotFound) {
            throw TVYXException(exception.GetStatusCode());
        }
        return {};
    }
}

} // namespace NQORVYX20
