#include "output/DisplayText.h"

#include "access/PluginAccess.h"
#include "host/ICIMProperty.h"
#include "host/TVYXException.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;

constexpr unsigned char kDecimal = 10;

std::string PlainText(const TCIMValue& value) {
    const bool is_date_time = value.GetType() == TCIMValue::TCIMType::eCIMDateTime && !value.IsNull();
    return is_date_time ? value.GetDateTime().ToUIString() : value.ToString(kDecimal);
}

std::vector<std::string> PlainTexts(const TCIMValue& value, bool is_list) {
    if (!is_list) {
        return {PlainText(value)};
    }
    std::vector<std::string> texts;
    for (const TCIMValue& element : static_cast<const std::vector<TCIMValue>&>(value)) {
        texts.push_back(PlainText(element));
    }
    return texts;
}

bool IsDateTime(TCIMValue::TCIMType type) {
    return type == TCIMValue::TCIMType::eCIMDateTime || type == TCIMValue::TCIMType::eCIMDateTimeArray;
}

std::vector<std::string> TextsOf(const PluginAccess& access, const ICIMProperty& property, bool is_list) {
    const TCIMValue& value = property.GetValue(TCIMContext());
    const auto declaration = property.GetDeclaration(TCIMContext());
    if (IsDateTime(value.GetType()) && !value.IsNull()) {
        return PlainTexts(value, is_list); // for which the plug-in has only the characters of the wire
    }
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
    if (!is_list_) {
        return texts_.front();
    }
    std::string joined;
    const char* separator = "";
    for (const std::string& text : texts_) {
        joined.append(separator).append(text.empty() ? "\"\"" : text);
        separator = ", ";
    }
    return joined;
}

} // namespace cimhttp
