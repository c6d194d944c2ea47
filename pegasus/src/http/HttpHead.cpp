#include "http/HttpHead.h"

#include <algorithm>

namespace Pegasus::http {

namespace {

char toLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// What stands behind two digits and a hyphen.
std::string_view withoutExtensionPrefix(std::string_view name) {
    const bool prefixed = name.size() > 3 && isDigit(name[0]) && isDigit(name[1]) && name[2] == '-';
    return name.substr(prefixed ? 3 : 0);
}

} // namespace

bool equalsNoCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return toLower(x) == toLower(y); });
}

const std::string* HttpFields::find(std::string_view name) const {
    const auto found = std::find_if(fields_.begin(), fields_.end(),
                                    [&](const auto& field) { return equalsNoCase(field.first, name); });
    return found != fields_.end() ? &found->second : nullptr;
}

const std::string* HttpFields::findCim(std::string_view name) const {
    if (const std::string* const plain = find(name)) {
        return plain;
    }
    const auto found = std::find_if(fields_.begin(), fields_.end(), [&](const auto& field) {
        return equalsNoCase(withoutExtensionPrefix(field.first), name);
    });
    return found != fields_.end() ? &found->second : nullptr;
}

std::vector<std::string_view> HttpFields::findAll(std::string_view name) const {
    std::vector<std::string_view> values;
    for (const auto& [fieldName, value] : fields_) {
        if (equalsNoCase(fieldName, name)) {
            values.emplace_back(value);
        }
    }
    return values;
}

std::string HttpFields::lines() const {
    std::string text;
    for (const auto& [name, value] : fields_) {
        text.append(name).append(": ").append(value).append("\r\n");
    }
    return text;
}

} // namespace Pegasus::http
