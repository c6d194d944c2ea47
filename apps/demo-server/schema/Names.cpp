#include "schema/Names.h"

#include "schema/AsciiCase.h"

#include <algorithm>

namespace demo {

namespace {

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

constexpr bool StartsName(char c) {
    return (LowerCase(c) >= 'a' && LowerCase(c) <= 'z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

} // namespace

bool IsName(std::string_view text) {
    return !text.empty() && StartsName(text.front()) &&
           std::all_of(text.begin(), text.end(), [](char c) { return StartsName(c) || IsDigit(c); });
}

bool IsNamespaceName(std::string_view text) {
    const auto end = text.find('/');
    return IsName(text.substr(0, end)) && (end == std::string_view::npos || IsNamespaceName(text.substr(end + 1)));
}

bool SameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return LowerCase(x) == LowerCase(y); });
}

bool NameLess::operator()(std::string_view a, std::string_view b) const {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](char x, char y) { return LowerCase(x) < LowerCase(y); });
}

} // namespace demo
