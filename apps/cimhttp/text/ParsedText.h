#pragma once

#include "text/Names.h"

#include <charconv>
#include <optional>
#include <string>
#include <system_error>

namespace cimhttp {

/// The number that a text is, of this type, for reals the nearest one; nothing for another text.
template <typename Number>
std::optional<Number> NumberIn(const std::string& text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [parsed, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && parsed == end ? std::optional<Number>(number) : std::nullopt;
}

/// What `true` or `false` is in any case; nothing for another text.
inline std::optional<bool> BooleanIn(const std::string& text) {
    const bool isTrue = IsSameName(text, "true");
    return isTrue || IsSameName(text, "false") ? std::optional<bool>(isTrue) : std::nullopt;
}

} // namespace cimhttp
