#include "monitoring/StatusText.h"

#include "text/TerminalText.h"

namespace cimhttp {

std::string StatusText(std::string_view text, std::size_t width) {
    constexpr std::size_t kMostBytes = 4; // of a character
    // More than this cannot be shown, except where characters have no width of their own.
    const bool isLong = text.size() > width * kMostBytes;
    const std::string printable = Printable(isLong ? text.substr(0, width * kMostBytes) : text);
    std::string safe;
    for (const char letter : printable) {
        safe += letter == '|' ? std::string("¦") : std::string(1, letter);
    }
    return !isLong && DisplayWidth(safe) <= width ? safe : Cut(safe, width - 1) + "…";
}

} // namespace cimhttp
