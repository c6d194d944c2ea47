#include "DisplayText.h"

#include "access/PluginAccess.h"
#include "host/ICIMProperty.h"
#include "host/TVYXException.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;

constexpr unsigned char kDecimal = 10;

std::vector<std::string> PlainTexts(const TCIMValue& value, bool is_list) {
    if (!is_list) {
        return {value.ToString(kDecimal)};
    }
    std::vector<std::string> texts;
    for (const TCIMValue& element : static_cast<const std::vector<TCIMValue>&>(value)) {
        texts.push_back(element.ToString(kDecimal));
    }
    return texts;
}

std::vector<std::string> TextsOf(const PluginAccess& access, const ICIMProperty& property, bool is_list) {
    const TCIMValue& value = property.GetValue(TCIMContext());
    const auto declaration = property.GetDeclaration(TCIMContext());
    try {
        const auto shown = access.MakeProperty(declaration, value);
        return is_list ? shown->ToStringVector() : std::vector<std::string>{shown->ToString()};
    } catch (const TVYXException&) {
        return PlainTexts(value, is_list);
    }
}

bool IsListOfValues(const TCIMValue& value) { return value.IsArray() && !value.IsNull(); }

} // namespace

DisplayText::DisplayText(const PluginAccess& access, const ICIMProperty& property)
    : is_list_(IsListOfValues(property.GetValue(TCIMContext()))), texts_(TextsOf(access, property, is_list_)) {}

std::string DisplayText::Joined() const {
    std::string joined;
    const char* separator = "";
    for (const std::string& text : texts_) {
        joined.append(separator).append(text);
        separator = ", ";
    }
    return joined;
}

} // namespace cimhttp
