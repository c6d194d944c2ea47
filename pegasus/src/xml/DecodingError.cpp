#include "xml/DecodingError.h"

#include "text/Utf8.h"

#include <utility>

namespace Pegasus::xml {

namespace {

constexpr std::size_t kLongestPart = 200;

std::string textOf(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        const std::string_view shown = text::beginningOf(part, kLongestPart);
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

void throwBadContent(std::initializer_list<std::string_view> parts) { throwError(DecodingError::Kind::Content, parts); }

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

} // namespace Pegasus::xml
