#include "output/Json.h"

#include "host/TCIMValue.h"
#include "output/DisplayText.h"
#include "text/TextBuffer.h"
#include "text/Utf8.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <ostream>
#include <type_traits>

namespace cimhttp {

namespace {

using NQORVYX20::TCIMDateTime;
using NQORVYX20::TCIMValue;

constexpr unsigned kSixteenBits = 0xFFFF;

void AppendEscaped(char32_t character, TextBuffer& text) {
    switch (character) {
    case '"':
    case '\\':
        text.Add('\\');
        text.Add(static_cast<char>(character));
        break;
    case '\n':
        text.Add("\\n");
        break;
    case '\r':
        text.Add("\\r");
        break;
    case '\t':
        text.Add("\\t");
        break;
    default:
        if (IsControl(character)) {
            for (const unsigned unit : Utf16Units(character)) {
                char escape[sizeof "\\u0000"];
                std::snprintf(escape, sizeof escape, "\\u%04x", unit & kSixteenBits);
                text.Add(escape);
            }
        } else {
            std::string utf8;
            AppendUtf8(character, utf8);
            text.Add(utf8);
        }
    }
}

template <typename Elements, typename Append>
void AppendArray(const Elements& elements, const Append& append, TextBuffer& json) {
    json.Add('[');
    for (const auto& element : elements) {
        if (&element != &elements.front()) {
            json.Add(',');
        }
        append(element, json);
    }
    json.Add(']');
}

/// Which bytes are ASCII that stands in JSON as it is.
constexpr auto kIsPlain = [] {
    std::array<bool, 256> isPlain{};
    for (char byte = ' '; byte <= '~'; ++byte) {
        isPlain[static_cast<unsigned char>(byte)] = byte != '"' && byte != '\\';
    }
    return isPlain;
}();

std::size_t EndOfPlain(std::string_view text, std::size_t begin) {
    while (begin < text.size() && kIsPlain[static_cast<unsigned char>(text[begin])]) {
        ++begin;
    }
    return begin;
}

/// Whether a character's bytes cannot stand in JSON as they are.
bool IsReplaced(const Utf8Character& character) {
    return IsControl(character.value) || character.value == '"' || character.value == '\\' || character.IsBad();
}

} // namespace

std::string JsonText(std::string_view text) {
    std::string json;
    AppendJsonText(text, json);
    return json;
}

void AppendJsonText(std::string_view text, std::string& json) {
    TextBuffer buffer;
    AppendJsonText(text, buffer);
    json += buffer.Text();
}

void AppendJsonText(std::string_view text, TextBuffer& json) {
    json.Add('"');
    std::size_t written = 0;
    for (std::size_t i = EndOfPlain(text, 0); i < text.size(); i = EndOfPlain(text, i)) {
        const Utf8Character character = CharacterAt(text, i);
        if (IsReplaced(character)) {
            json.Add(text.substr(written, i - written));
            AppendEscaped(character.value, json);
            written = i + character.size;
        }
        i += character.size;
    }
    json.Add(text.substr(written));
    json.Add('"');
}

std::string JsonValue(const TCIMValue& value) {
    TextBuffer json;
    AppendJsonValue(value, json);
    return std::string(json.Text());
}

void AppendJsonValue(const TCIMValue& value, TextBuffer& json) {
    value.Visit([&](const auto& content) {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Content, TCIMValue::TCIMType>) {
            json.Add("null");
        } else if constexpr (std::is_same_v<Content, std::string>) {
            AppendJsonText(content, json);
        } else if constexpr (std::is_same_v<Content, std::vector<TCIMValue>>) {
            AppendArray(content, AppendJsonValue, json);
        } else if constexpr (std::is_floating_point_v<Content>) {
            if (std::isfinite(content)) {
                AppendPlainText(value, json);
            } else {
                AppendJsonText(PlainText(value), json);
            }
        } else if constexpr (std::is_arithmetic_v<Content>) {
            AppendPlainText(value, json);
        } else if constexpr (std::is_same_v<Content, TCIMDateTime>) {
            AppendJsonText(content.Characters(), json);
        } else {
            AppendJsonText(PlainText(value), json);
        }
    });
}

std::string JsonTexts(const std::vector<std::string>& texts) {
    std::string json;
    AppendJsonTexts(texts, json);
    return json;
}

void AppendJsonTexts(const std::vector<std::string>& texts, std::string& json) {
    TextBuffer buffer;
    AppendArray(
        texts, [](const std::string& text, TextBuffer& array) { AppendJsonText(text, array); }, buffer);
    json += buffer.Text();
}

JsonObject& JsonObject::Add(std::string_view name, std::string_view json) {
    text_ += text_.empty() ? '{' : ',';
    AppendJsonText(name, text_);
    text_ += ':';
    text_ += json;
    return *this;
}

JsonObject& JsonObject::AddMembers(std::string_view members) {
    text_ += text_.empty() ? '{' : ',';
    text_ += members;
    return *this;
}

std::ostream& JsonLines::Next() {
    output_ << (isEmpty_ ? "[\n" : ",\n");
    isEmpty_ = false;
    return output_;
}

void JsonLines::End(const char* end) { output_ << (isEmpty_ ? "[" : "") << end; }

} // namespace cimhttp
