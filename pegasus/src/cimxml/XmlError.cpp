#include "cimxml/XmlError.h"

#include <algorithm>
#include <utility>

namespace Pegasus::cimxml {

namespace {

constexpr std::size_t kLongestPart = 200;

std::string textOf(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        const std::string_view shown = beginningOf(part, kLongestPart);
        text += shown;
        if (shown.size() != part.size()) {
            text += "...";
        }
    }
    return text;
}

[[noreturn]] void throwError(DecodingError::Kind kind, std::initializer_list<std::string_view> parts) {
    throw DecodingError{kind, textOf(parts), std::nullopt};
}

} // namespace

std::string_view beginningOf(std::string_view text, std::size_t length) noexcept {
    const auto isContinuation = [&](std::size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U; };
    std::size_t end = std::min(length, text.size());
    while (end != 0 && end != text.size() && isContinuation(end)) {
        --end;
    }
    return text.substr(0, end);
}

void throwXmlError(std::initializer_list<std::string_view> parts) { throwError(DecodingError::Kind::Content, parts); }

void throwIncomplete(std::initializer_list<std::string_view> parts) {
    throwError(DecodingError::Kind::Incomplete, parts);
}

void throwMalformed(std::initializer_list<std::string_view> parts) {
    throwError(DecodingError::Kind::Malformed, parts);
}

void throwPastLimit(std::initializer_list<std::string_view> parts) { throwError(DecodingError::Kind::Limit, parts); }

void throwBadValue(std::string_view what, std::string_view value) {
    throw DecodingError{DecodingError::Kind::Content, textOf({what, ": ", value}), textOf({value})};
}

} // namespace Pegasus::cimxml
