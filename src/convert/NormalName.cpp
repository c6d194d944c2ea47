#include "convert/NormalName.h"

#include "convert/CoreLog.h"
#include "convert/LetterCase.h"
#include "host/TVYXException.h"

#include <array>
#include <cctype>
#include <cstddef>

namespace NQORVYX20 {

namespace {

constexpr char kIllegal = '\0';

constexpr bool IsDigit(char letter) { return letter >= '0' && letter <= '9'; }

constexpr char NormalizeAscii(char letter) {
    const char lower = ToLower(letter);
    const bool isLegal = (lower >= 'a' && lower <= 'z') || IsDigit(lower) || lower == '_';
    return isLegal ? lower : kIllegal;
}

constexpr std::size_t kAsciiEnd = 0x80;

constexpr std::array<char, kAsciiEnd> MakeAsciiTable() {
    std::array<char, kAsciiEnd> table{};
    for (std::size_t code = 0; code < kAsciiEnd; ++code) {
        table[code] = NormalizeAscii(static_cast<char>(code));
    }
    return table;
}

/// A letter or underscore in lower case, a digit, or kIllegal. Names are normalised so often that the locale is asked
/// about other characters than ASCII only.
char NormalizeLetter(char letter, NameRule rule) {
    static constexpr auto kAscii = MakeAsciiTable();
    const auto code = static_cast<unsigned char>(letter);
    if (code < kAsciiEnd) {
        return kAscii[code];
    }
    if (rule == NameRule::kCim) {
        return letter;
    }
    return std::isalpha(code) != 0 ? static_cast<char>(std::tolower(code)) : kIllegal;
}

} // namespace

std::string NormalizeName(const std::string& name, NameRule rule) {
    std::string normalized(name);
    bool isLegal = name.empty() || !IsDigit(name.front());
    for (char& letter : normalized) {
        letter = NormalizeLetter(letter, rule);
        isLegal = isLegal && letter != kIllegal;
    }
    if (!isLegal) {
        LogError("CimHTTP: CIM name '" + name + "' is invalid");
        throw TVYXException(TVYXStatusCode::eInvalidName);
    }
    return normalized;
}

} // namespace NQORVYX20
