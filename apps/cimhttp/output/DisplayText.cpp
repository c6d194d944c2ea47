#include "output/DisplayText.h"

#include "access/PluginAccess.h"
#include "host/ICIMProperty.h"
#include "host/TVYXException.h"
#include "output/Json.h"
#include "output/NullText.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;

constexpr unsigned char kDecimal = 10;

std::string PlainText(const TCIMValue& value) {
    const bool is_date_time = value.GetType() == TCIMValue::TCIMType::eCIMDateTime && !value.IsNull();
    return is_date_time ? value.GetDateTime().ToUIString() : value.ToString(kDecimal);
}

bool IsListOfValues(const TCIMValue& value) { return value.IsArray() && !value.IsNull(); }

const std::vector<TCIMValue>& ElementsOf(const TCIMValue& array) { return array; }

std::vector<std::string> PlainTexts(const TCIMValue& value, bool is_list) {
    if (!is_list) {
        return {PlainText(value)};
    }
    std::vector<std::string> texts;
    for (const TCIMValue& element : ElementsOf(value)) {
        texts.push_back(PlainText(element));
    }
    return texts;
}

/// The plug-in has only the characters of the wire for a date-time, and allows no reference that its declaration does
/// not name the class of, which a server's declarations need not do.
bool HasPlainText(const TCIMValue& value) {
    const TCIMValue::TCIMType type = value.GetType();
    const bool is_date_time =
        type == TCIMValue::TCIMType::eCIMDateTime || type == TCIMValue::TCIMType::eCIMDateTimeArray;
    const bool is_reference =
        type == TCIMValue::TCIMType::eCIMReference || type == TCIMValue::TCIMType::eCIMReferenceArray;
    return is_reference || (is_date_time && !value.IsNull());
}

std::vector<std::string> TextsOf(const PluginAccess& access,
                                 const boost::shared_ptr<ICIMPropertyDecl const>& declaration, const TCIMValue& value,
                                 bool is_list) {
    if (HasPlainText(value)) {
        return PlainTexts(value, is_list);
    }
    try {
        const auto shown = access.MakeProperty(declaration, value);
        return is_list ? shown->ToStringVector() : std::vector<std::string>{shown->ToString()};
    } catch (const TVYXException&) {
        return PlainTexts(value, is_list);
    }
}

std::vector<bool> NullsAmong(const TCIMValue& value, bool is_list) {
    std::vector<bool> nulls;
    if (!is_list) {
        return nulls;
    }
    for (const TCIMValue& element : ElementsOf(value)) {
        nulls.push_back(element.IsNull());
    }
    return nulls;
}

} // namespace

DisplayText::DisplayText(const PluginAccess& access, const ICIMProperty& property)
    : DisplayText(access, property.GetDeclaration(TCIMContext()), property.GetValue(TCIMContext())) {}

DisplayText::DisplayText(const PluginAccess& access, const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                         const TCIMValue& value)
    : is_list_(IsListOfValues(value)),
      is_null_(NullsAmong(value, is_list_)),
      texts_(TextsOf(access, declaration, value, is_list_)) {}

std::string DisplayText::Joined() const {
    if (!is_list_) {
        return texts_.front();
    }
    std::string joined;
    const char* separator = "";
    for (std::size_t i = 0; i < texts_.size(); ++i) {
        const char* const for_empty = is_null_[i] ? kNullText : "\"\"";
        joined.append(separator).append(texts_[i].empty() ? for_empty : texts_[i]);
        separator = ", ";
    }
    return joined;
}

void DisplayText::AppendJson(std::string& json) const {
    if (is_list_) {
        AppendJsonTexts(texts_, json);
    } else {
        AppendJsonText(texts_.front(), json);
    }
}

std::string RawText(const TCIMValue& value) {
    if (!IsListOfValues(value)) {
        return value.ToString(kDecimal);
    }
    std::string text = "{";
    const char* separator = "";
    for (const TCIMValue& element : ElementsOf(value)) {
        text.append(separator).append(element.IsNull() ? kNullText : element.ToString(kDecimal));
        separator = ", ";
    }
    return text + '}';
}

} // namespace cimhttp
