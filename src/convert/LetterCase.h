#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

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

/// Whether texts are the same but for the case of the letters from A to Z.
struct EqualInAnyCase {
    bool operator()(std::string_view left, std::string_view right) const {
        return left == right || std::equal(left.begin(), left.end(), right.begin(), right.end(),
                                           [](char a, char b) { return ToLower(a) == ToLower(b); });
    }
};

/// The same number for texts that are the same but for case, made of eight bytes at a time. The bit that distinguishes
/// upper from lower case counts in no byte.
struct HashInAnyCase {
    std::size_t operator()(std::string_view text) const {
        std::uint64_t hash = text.size();
        for (; text.size() > sizeof hash; text.remove_prefix(sizeof hash)) {
            hash = Mix(hash, text);
        }
        return static_cast<std::size_t>(Mix(hash, text));
    }

  private:
    static std::uint64_t Mix(std::uint64_t hash, std::string_view text) {
        constexpr std::uint64_t kGoldenRatio = 0x9E3779B97F4A7C15;
        constexpr std::uint64_t kCaseBits = 0x2020202020202020;
        constexpr unsigned int kHalf = 32;
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, text.data(), std::min(text.size(), sizeof bytes));
        hash = (hash ^ (bytes | kCaseBits)) * kGoldenRatio;
        return hash ^ (hash >> kHalf);
    }
};

} // namespace NQORVYX20
