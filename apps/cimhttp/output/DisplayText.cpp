#include "output/DisplayText.h"

#include "host/TCIMValue.h"
#include "output/Json.h"
#include "table/TableCell.h"
#include "text/TextBuffer.h"

#include <charconv>
#include <limits>
#include <type_traits>
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
        joined.append(separator).append(TextInList(texts_[i], isNull_[i]));
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

std::string_view TextInList(std::string_view text, bool isNull) {
    const std::string_view forEmpty = isNull ? kNullText : "\"\"";
    return text.empty() ? forEmpty : text;
}

bool ShowsAsItIs(const TCIMValue& value) {
    return value.Visit([](const auto& content) {
        using Content = std::decay_t<decltype(content)>;
        return std::is_same_v<Content, std::string> || std::is_integral_v<Content>;
    });
}

std::string PlainText(const TCIMValue& value) {
    constexpr unsigned char kDecimal = 10;
    return value.ToString(kDecimal);
}

void AppendPlainText(const TCIMValue& value, TextBuffer& text) {
    value.Visit([&](const auto& content) {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Content, std::string>) {
            text.Add(content);
        } else if constexpr (std::is_same_v<Content, bool>) {
            text.Add(content ? "true" : "false");
        } else if constexpr (std::is_integral_v<Content>) {
            constexpr std::size_t kMost =
                std::numeric_limits<Content>::digits10 + 2; // one more digit may be, and a sign
            char* const room = text.Room(kMost);
            text.Take(std::to_chars(room, room + kMost, content).ptr);
        } else {
            text.Add(PlainText(value));
        }
    });
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
