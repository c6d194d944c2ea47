#pragma once

#include <Pegasus/Common/String.h>

#include <array>
#include <string>

namespace Pegasus {
inline namespace bundled {
namespace detail {

/// The words of the set bits, lowest bit first, separated by one blank.
template <std::size_t count>
String bitWords(Uint32 bits, const std::array<const char*, count>& words) {
    std::string text;
    for (std::size_t bit = 0; bit < count; ++bit) {
        if ((bits >> bit & 1U) == 0) {
            continue;
        }
        if (!text.empty()) {
            text += ' ';
        }
        text += words[bit];
    }
    return String(std::string_view(text));
}

} // namespace detail
} // namespace bundled
} // namespace Pegasus
