#include "model/Utf16.h"

#include "text/Utf8.h"

#include <cstdint>

namespace Pegasus {
inline namespace bundled {
namespace detail {

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;
constexpr std::uint32_t kFirstSupplementary = 0x10000;

constexpr bool isLeading(std::uint32_t unit) noexcept { return (unit & 0xFC00U) == 0xD800U; }
constexpr bool isTrailing(std::uint32_t unit) noexcept { return (unit & 0xFC00U) == 0xDC00U; }

void appendUnits(std::u16string& out, std::uint32_t codePoint) {
    if (codePoint < kFirstSupplementary) {
        out += static_cast<char16_t>(codePoint);
        return;
    }
    const std::uint32_t offset = codePoint - kFirstSupplementary;
    out += static_cast<char16_t>(0xD800U | offset >> 10U);
    out += static_cast<char16_t>(0xDC00U | (offset & 0x3FFU));
}

} // namespace

std::u16string utf16Of(std::string_view utf8) {
    std::u16string units;
    units.reserve(utf8.size());
    while (!utf8.empty()) {
        const auto [length, codePoint] = text::firstCharacter(utf8);
        const bool isGood = length != 0 && !text::isSurrogate(codePoint);
        appendUnits(units, isGood ? codePoint : kReplacement);
        utf8.remove_prefix(isGood ? length : 1);
    }
    return units;
}

std::string utf8Of(std::u16string_view units) {
    std::string text;
    text.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        const std::uint32_t unit = units[i];
        if (isLeading(unit) && i + 1 < units.size() && isTrailing(units[i + 1])) {
            const std::uint32_t next = units[++i];
            text::appendUtf8(kFirstSupplementary + ((unit & 0x3FFU) << 10U | (next & 0x3FFU)), text);
        } else {
            text::appendUtf8(text::isSurrogate(unit) ? kReplacement : unit, text);
        }
    }
    return text;
}

} // namespace detail
} // namespace bundled
} // namespace Pegasus
