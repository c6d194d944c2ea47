#include "output/Json.h"

#include "host/TCIMValue.h"
#include "output/DisplayText.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ostream>

namespace cimhttp {

namespace {

using NQORVYX20::TCIMValue;
using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr unsigned kSixteenBits = 0xFFFF;

void AppendEscaped(char32_t character, std::string& text) {
    switch (character) {
    case '"':
    case '\\':
        text += '\\';
        text += static_cast<char>(character);
        break;
    case '\n':
        text += "\\n";
        break;
    case '\r':
        text += "\\r";
        break;
    case '\t':
        text += "\\t";
        break;
    default:
        if (IsControl(character)) {
            for (const unsigned unit : Utf16Units(character)) {
                char escape[sizeof "\\u0000"];
                std::snprintf(escape, sizeof escape, "\\u%04x", unit & kSixteenBits);
                text += escape;
            }
        } else {
            AppendUtf8(character, text);
        }
    }
}

bool IsInteger(ECIMType type) { return type >= ECIMType::eCIMUint8 && type <= ECIMType::eCIMSint64; }
bool IsReal(ECIMType type) { return type == ECIMType::eCIMReal32 || type == ECIMType::eCIMReal64; }

void AppendScalar(const TCIMValue& value, std::string& json) {
    const ECIMType type = value.GetType();
    const bool isBare =
        type == ECIMType::eCIMBoolean || IsInteger(type) || (IsReal(type) && std::isfinite(static_cast<double>(value)));
    if (isBare) {
        json += PlainText(value);
    } else {
        AppendJsonText(PlainText(value), json);
    }
}

template <typename Elements, typename Append>
void AppendArray(const Elements& elements, const Append& append, std::string& json) {
    json += '[';
    for (const auto& element : elements) {
        if (&element != &elements.front()) {
            json += ',';
        }
        append(element, json);
    }
    json += ']';
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
    const auto isPlain = [](char byte) { return kIsPlain[static_cast<unsigned char>(byte)]; };
    const auto* const end = std::find_if_not(text.begin() + begin, text.end(), isPlain);
    return static_cast<std::size_t>(end - text.begin());
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
    json += '"';
    std::size_t written = 0;
    for (std::size_t i = EndOfPlain(text, 0); i < text.size(); i = EndOfPlain(text, i)) {
        const Utf8Character character = CharacterAt(text, i);
        if (IsReplaced(character)) {
            json.append(text, written, i - written);
            AppendEscaped(character.value, json);
            written = i + character.size;
        }
        i += character.size;
    }
    json.append(text, written);
    json += '"';
}

std::string JsonValue(const TCIMValue& value) {
    std::string json;
    AppendJsonValue(value, json);
    return json;
}

void AppendJsonValue(const TCIMValue& value, std::string& json) {
    if (value.IsNull()) {
        json += "null";
    } else if (value.IsArray()) {
        AppendArray(static_cast<const std::vector<TCIMValue>&>(value), AppendJsonValue, json);
    } else {
        AppendScalar(value, json);
    }
}

std::string JsonTexts(const std::vector<std::string>& texts) {
    std::string json;
    AppendJsonTexts(texts, json);
    return json;
}

void AppendJsonTexts(const std::vector<std::string>& texts, std::string& json) {
    AppendArray(texts, AppendJsonText, json);
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
