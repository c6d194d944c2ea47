#pragma once

#include <Pegasus/Common/Config.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace Pegasus::detail {

constexpr bool startsName(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || static_cast<Uint8>(c) >= 0x80;
}

constexpr bool continuesName(char c) noexcept { return startsName(c) || (c >= '0' && c <= '9'); }

/// How many bytes of a text are the name that it begins with; 0 where it begins with none.
inline std::size_t nameSize(std::string_view text) noexcept {
    if (text.empty() || !startsName(text.front())) {
        return 0;
    }
    return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), continuesName) - text.begin());
}

} // namespace Pegasus::detail
