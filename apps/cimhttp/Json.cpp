#include "Json.h"

#include <cmath>
#include <cstdio>

#include "Utf8.h"
#include "host/TCIMValue.h"

namespace cimhttp {

namespace {

using NQORVYX20::TCIMValue;
using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr unsigned char kDecimal = 10;

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
            char escape[sizeof "\\u0000"];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(character));
            text += escape;
        } else {
            AppendUtf8(character, text);
        }
    }
}

bool IsInteger(ECIMType type) { return type >= ECIMType::eCIMUint8 && type <= ECIMType::eCIMSint64; }
bool IsReal(ECIMType type) { return type == ECIMType::eCIMReal32 || type == ECIMType::eCIMReal64; }

std::string ScalarJson(const TCIMValue& value) {
    const ECIMType type = value.GetType();
    const std::string text = value.ToString(kDecimal);
    const bool is_bare =
        type == ECIMType::eCIMBoolean || IsInteger(type) || (IsReal(type) && std::isfinite(static_cast<double>(value)));
    return is_bare ? text : JsonText(text);
}

} // namespace

std::string JsonText(std::string_view text) {
    std::string json = "\"";
    for (std::size_t i = 0; i < text.size();) {
        const Utf8Character character = CharacterAt(text, i);
        AppendEscaped(character.value, json);
        i += character.size;
    }
    return json + '"';
}

std::string JsonValue(const TCIMValue& value) {
    if (value.IsNull()) {
        return "null";
    }
    if (!value.IsArray()) {
        return ScalarJson(value);
    }
    JsonArray elements;
    for (const TCIMValue& element : static_cast<const std::vector<TCIMValue>&>(value)) {
        elements.Add(JsonValue(element));
    }
    return elements.Text();
}

std::string JsonTexts(const std::vector<std::string>& texts) {
    JsonArray array;
    for (const std::string& text : texts) {
        array.Add(JsonText(text));
    }
    return array.Text();
}

JsonObject& JsonObject::Add(std::string_view name, std::string_view json) {
    text_ += text_.empty() ? '{' : ',';
    text_ += JsonText(name);
    text_ += ':';
    text_ += json;
    return *this;
}

void JsonArray::Add(std::string_view json) {
    text_ += text_.empty() ? '[' : ',';
    text_ += json;
}

} // namespace cimhttp
