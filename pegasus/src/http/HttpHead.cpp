#include "http/HttpHead.h"

#include "text/Ascii.h"

#include <algorithm>

namespace Pegasus::http {

namespace {

/// A name without the two digits and the hyphen of an extension.
std::string_view withoutExtensionPrefix(std::string_view name) {
    const bool prefixed = name.size() > 3 && text::isDigit(name[0]) && text::isDigit(name[1]) && name[2] == '-';
    return name.substr(prefixed ? 3 : 0);
}

} // namespace

const std::string* HttpFields::find(std::string_view name) const {
    const auto found = std::find_if(fields_.begin(), fields_.end(),
                                    [&](const auto& field) { return text::equalIgnoringCase(field.first, name); });
    return found != fields_.end() ? &found->second : nullptr;
}

const std::string* HttpFields::findExtension(std::string_view name) const {
    if (const std::string* const plain = find(name)) {
        return plain;
    }
    const auto found = std::find_if(fields_.begin(), fields_.end(), [&](const auto& field) {
        return text::equalIgnoringCase(withoutExtensionPrefix(field.first), name);
    });
    return found != fields_.end() ? &found->second : nullptr;
}

std::vector<std::string_view> HttpFields::findAll(std::string_view name) const {
    std::vector<std::string_view> values;
    for (const auto& [fieldName, value] : fields_) {
        if (text::equalIgnoringCase(fieldName, name)) {
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
