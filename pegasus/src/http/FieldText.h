#pragma once

#include <string_view>

namespace Pegasus::http {

/// A text without the blanks and tabs at either end, which are no part of the value of a field (RFC 9110, 5.5).
constexpr std::string_view withoutBlanks(std::string_view text) noexcept {
    const std::size_t begin = text.find_first_not_of(" \t");
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

} // namespace Pegasus::http
