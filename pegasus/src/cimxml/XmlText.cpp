#include "cimxml/XmlText.h"

#include "cimxml/ByteSet.h"
#include "cimxml/XmlCharacters.h"

#include <array>
#include <charconv>
#include <cstring>
#include <system_error>
#include <utility>

namespace Pegasus::cimxml {

namespace {

std::optional<std::uint32_t> characterIn(std::string_view digits, int base) noexcept {
    std::uint32_t codePoint = 0;
    const char* const end = digits.data() + digits.size();
    const auto [last, error] = std::from_chars(digits.data(), end, codePoint, base);
    return error == std::errc() && last == end && isXmlCharacter(codePoint) ? std::optional(codePoint) : std::nullopt;
}

/// The bytes that do not stand for themselves.
const ByteSet& specialBytes(TextPlace place) noexcept {
    static constexpr ByteSet kInContent("&\r");
    static constexpr ByteSet kInCData("\r");
    static constexpr ByteSet kInAttributeValue("&\r\n\t");
    switch (place) {
    case TextPlace::CData:
        return kInCData;
    case TextPlace::AttributeValue:
        return kInAttributeValue;
    case TextPlace::Content:
        break;
    }
    return kInContent;
}

/// Takes a reference or white space off the front of `rest`; writes what it stands for and returns the end of that.
char* resolveFirst(std::string_view& rest, char* out, char lineEnd) noexcept {
    std::size_t taken = 1;
    if (rest.front() == '&') {
        taken = rest.find(';') + 1;
        out = putCharacter(codePointOf(rest.substr(1, taken - 2)).value_or(0), out);
    } else {
        if (rest.substr(0, 2) == "\r\n")
            taken = 2;
        *out++ = lineEnd;
    }
    rest.remove_prefix(taken);
    return out;
}

} // namespace

std::optional<std::uint32_t> codePointOf(std::string_view reference) noexcept {
    constexpr std::array<std::pair<std::string_view, char>, 5> kEntities = {
        {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
    if (reference.substr(0, 2) == "#x")
        return characterIn(reference.substr(2), 16);
    if (reference.substr(0, 1) == "#")
        return characterIn(reference.substr(1), 10);
    for (const auto& [name, character] : kEntities)
        if (reference == name)
            return static_cast<unsigned char>(character);
    return std::nullopt;
}

std::string_view resolveText(char* raw, std::size_t size, TextPlace place) noexcept {
    const ByteSet& special = specialBytes(place);
    const char lineEnd = place == TextPlace::AttributeValue ? ' ' : '\n';
    std::string_view rest(raw, size);
    std::size_t plain = special.lengthBefore(rest);
    char* out = raw + plain;
    rest.remove_prefix(plain);
    while (!rest.empty()) {
        out = resolveFirst(rest, out, lineEnd);
        plain = special.lengthBefore(rest);
        std::memmove(out, rest.data(), plain);
        out += plain;
        rest.remove_prefix(plain);
    }
    return {raw, static_cast<std::size_t>(out - raw)};
}

} // namespace Pegasus::cimxml
