#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace NQORVYX20::names {

// Names of classes, properties and keys are the same in any letter case: letters from A to Z, whatever the locale is.

constexpr char ToLower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

inline std::string LowerCase(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(), ToLower);
    return name;
}

inline bool IsSameName(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return ToLower(a) == ToLower(b); });
}

} // namespace NQORVYX20::names
