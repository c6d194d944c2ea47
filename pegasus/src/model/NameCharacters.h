#pragma once

#include "text/Ascii.h"

#include <Pegasus/Common/Config.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace Pegasus {
inline namespace bundled {
namespace detail {

constexpr bool startsName(char c) noexcept { return text::isLetter(c) || c == '_' || static_cast<Uint8>(c) >= 0x80; }

constexpr bool continuesName(char c) noexcept { return startsName(c) || text::isDigit(c); }

/// How many bytes of a text are the name that it begins with; 0 where it begins with none.
inline std::size_t nameSize(std::string_view begun) noexcept {
    if (begun.empty() || !startsName(begun.front())) {
        return 0;
    }
    return static_cast<std::size_t>(std::find_if_not(begun.begin(), begun.end(), continuesName) - begun.begin());
}

} // namespace detail
} // namespace bundled
} // namespace Pegasus
