#include "http/HttpHead.h"

#include <algorithm>

namespace Pegasus::http {

namespace {

char toLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

} // namespace

bool equalsNoCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return toLower(x) == toLower(y); });
}

const std::string* HttpFields::find(std::string_view name) const {
    const auto found = std::find_if(fields_.begin(), fields_.end(),
                                    [&](const auto& field) { return equalsNoCase(field.first, name); });
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
