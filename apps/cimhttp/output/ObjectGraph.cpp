#include "output/ObjectGraph.h"

#include <algorithm>
#include <map>

namespace cimhttp {

namespace {

constexpr unsigned char kDecimal = 10;
constexpr char kSeparator = '\0'; // which no part has

/// Names and hosts are the same in any letter case; beyond ASCII they are compared as they are.
std::string LowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return text;
}

} // namespace

std::string IdentityOf(const NQORVYX20::TCIMReference& path) {
    std::map<std::string, std::string> keys;
    path.EnumerateKeyValues([&](const std::string& name, const NQORVYX20::TCIMValue& value) {
        keys[LowerCase(name)] = value.ToString(kDecimal);
        return true;
    });
    std::string identity = LowerCase(path.GetHost()) + kSeparator + LowerCase(path.GetNamespaceName()) + kSeparator +
                           LowerCase(path.GetClassName());
    for (const auto& [name, value] : keys) {
        identity += kSeparator + name + kSeparator + value;
    }
    return identity;
}

} // namespace cimhttp
