#include "output/ObjectGraph.h"

#include "text/Ascii.h"

#include <map>

namespace cimhttp {

namespace {

constexpr unsigned char kDecimal = 10;
constexpr char kSeparator = '\0'; // which no part has

} // namespace

std::string IdentityOf(const NQORVYX20::TCIMReference& path) {
    std::map<std::string, std::string> keys;
    path.EnumerateKeyValues([&](const std::string& name, const NQORVYX20::TCIMValue& value) {
        keys[AsciiLower(name)] = value.ToString(kDecimal);
        return true;
    });
    std::string identity = AsciiLower(path.GetHost()) + kSeparator + AsciiLower(path.GetNamespaceName()) + kSeparator +
                           AsciiLower(path.GetClassName());
    for (const auto& [name, value] : keys) {
        identity += kSeparator + name + kSeparator + value;
    }
    return identity;
}

} // namespace cimhttp
