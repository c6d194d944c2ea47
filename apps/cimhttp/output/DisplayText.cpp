#include "output/DisplayText.h"

#include "host/TCIMValue.h"
#include "output/Json.h"
#include "table/TableCell.h"

#include <utility>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

bool IsListOfValues(const TCIMValue& value) { return value.IsArray() && !value.IsNull(); }

const std::vector<TCIMValue>& ElementsOf(const TCIMValue& array) { return array; }

std::vector<bool> NullsAmong(const TCIMValue& value, bool isList) {
    std::vector<bool> nulls;
    if (!isList) {
        return nulls;
    }
    for (const TCIMValue& element : ElementsOf(value)) {
        nulls.push_back(element.IsNull());
    }
    return nulls;
}

} // namespace

DisplayText::DisplayText(const TCIMValue& value, std::vector<std::string> texts)
    : isList_(IsListOfValues(value)), isNull_(NullsAmong(value, isList_)), texts_(std::move(texts)) {}

std::string DisplayText::Joined() const {
    if (!isList_) {
        return texts_.front();
    }
    std::string joined;
    const char* separator = "";
    for (std::size_t i = 0; i < texts_.size(); ++i) {
        const char* const forEmpty = isNull_[i] ? kNullText : "\"\"";
        joined.append(separator).append(texts_[i].empty() ? forEmpty : texts_[i]);
        separator = ", ";
    }
    return joined;
}

void DisplayText::AppendJson(std::string& json) const {
    if (isList_) {
        AppendJsonTexts(texts_, json);
    } else {
        AppendJsonText(texts_.front(), json);
    }
}

std::string PlainText(const TCIMValue& value) {
    constexpr unsigned char kDecimal = 10;
    return value.ToString(kDecimal);
}

std::vector<std::string> PlainTexts(const TCIMValue& value) {
    if (!IsListOfValues(value)) {
        return {PlainText(value)};
    }
    std::vector<std::string> texts;
    texts.reserve(ElementsOf(value).size());
    for (const TCIMValue& element : ElementsOf(value)) {
        texts.push_back(PlainText(element));
    }
    return texts;
}

std::string RawText(const TCIMValue& value) {
    if (!IsListOfValues(value)) {
        return PlainText(value);
    }
    std::string text = "{";
    const char* separator = "";
    for (const TCIMValue& element : ElementsOf(value)) {
        text.append(separator).append(element.IsNull() ? kNullText : PlainText(element));
        separator = ", ";
    }
    return text + '}';
}

} // namespace cimhttp
