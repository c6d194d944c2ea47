#include "output/ValueTexts.h"

#include "access/PluginAccess.h"
#include "host/ICIMProperty.h"
#include "host/TVYXException.h"

#include <vector>

namespace cimhttp {

using namespace NQORVYX20;

namespace {

constexpr unsigned char kDecimal = 10;

std::vector<std::string> PlainTexts(const TCIMValue& value) {
    if (!value.IsArray() || value.IsNull()) {
        return {value.ToString(kDecimal)};
    }
    const std::vector<TCIMValue>& elements = value;
    std::vector<std::string> texts;
    texts.reserve(elements.size());
    for (const TCIMValue& element : elements) {
        texts.push_back(element.ToString(kDecimal));
    }
    return texts;
}

} // namespace

DisplayText ValueTexts::Of(const ICIMInstance& instance, const ICIMProperty& property) const {
    return Of(&instance, property.GetDeclaration(TCIMContext()), property.GetValue(TCIMContext()));
}

DisplayText ValueTexts::Of(const ICIMInstance* instance, const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                           const TCIMValue& value) const {
    try {
        return {value, access_->TextsOf(instance, declaration, value, form_)};
    } catch (const TVYXException&) {
        return {value, PlainTexts(value)};
    }
}

} // namespace cimhttp
