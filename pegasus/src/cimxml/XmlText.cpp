#include "cimxml/XmlText.h"

#include "cimxml/ByteSet.h"
#include "cimxml/XmlCharacters.h"
#include "cimxml/XmlError.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <optional>
#include <system_error>
#include <utility>

namespace Pegasus::cimxml {

namespace {

constexpr std::size_t kLongestReference = 10; // "&#1114111;"

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
    static constexpr ByteSet kInAttributeValue("<&\r\n\t");
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

/// The code point that a reference stands for, given without its '&' and ';': one of XML's five entities, or a
/// character in base 10 or 16. Nothing for every other text, and for characters that XML does not allow.
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

/// Takes the reference off the front of `rest`; writes what it stands for and returns the end of that.
char* resolveReference(std::string_view& rest, char* out) {
    const std::size_t end = rest.substr(0, kLongestReference).find(';');
    if (end == std::string_view::npos)
        throwXmlError({"'&' begins no reference: ", rest.substr(0, kLongestReference)});
    const std::string_view reference = rest.substr(1, end - 1);
    const auto codePoint = codePointOf(reference);
    if (!codePoint)
        throwXmlError({"it has the unknown reference &", reference, ";"});
    rest.remove_prefix(end + 1);
    return putCharacter(*codePoint, out);
}

/// Takes what does not stand for itself off the front of `rest`; writes what it stands for and returns the end of that.
char* resolveFirst(std::string_view& rest, char* out, char lineEnd) {
    switch (rest.front()) {
    case '<':
        throwXmlError({"the value of an attribute holds '<'"});
    case '&':
        return resolveReference(rest, out);
    default:
        rest.remove_prefix(rest.substr(0, 2) == "\r\n" ? 2 : 1);
        *out = lineEnd;
        return out + 1;
    }
}

} // namespace

std::string_view resolveText(char* raw, std::size_t size, TextPlace place) {
    std::string_view rest(raw, size);
    // Most texts stand for themselves. For long ones the library's search is much faster than a look-up per byte.
    if (place == TextPlace::Content && rest.find('&') == std::string_view::npos &&
        rest.find('\r') == std::string_view::npos)
        return rest;
    const ByteSet& special = specialBytes(place);
    const char lineEnd = place == TextPlace::AttributeValue ? ' ' : '\n';
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
