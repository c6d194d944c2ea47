#include "schema/PathText.h"

#include "schema/AsciiCase.h"

#include <algorithm>
#include <vector>

namespace demo {

namespace {

std::string Quoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result += '\\';
        }
        result += c;
    }
    return result += '"';
}

std::string KeyText(const KeyBinding& key) {
    if (const ObjectPath* const reference = key.value.AsReference()) {
        return Quoted(PathText(*reference));
    }
    const std::string* const text = key.value.AsText();
    return text ? Quoted(*text) : "";
}

} // namespace

std::string PathText(const ObjectPath& path) {
    std::vector<std::string> keys;
    keys.reserve(path.keys.size());
    for (const auto& key : path.keys) {
        keys.push_back(LowerCase(key.name) + '=' + KeyText(key));
    }
    std::sort(keys.begin(), keys.end());
    std::string result = LowerCase(path.nameSpace) + ':' + LowerCase(path.className);
    for (const auto& key : keys) {
        (result += '.') += key;
    }
    return result;
}

} // namespace demo
