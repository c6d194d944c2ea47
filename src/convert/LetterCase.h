#pragma once

#include <algorithm>
#include <string>

namespace NQORVYX20 {

/// A letter from A to Z in lower case; every other byte as it is. The locale has no say.
constexpr char ToLower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// A text with its letters from A to Z in lower case.
inline std::string LowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), ToLower);
    return text;
}

} // namespace NQORVYX20
