#include "table/TableCell.h"

#include "text/TerminalText.h"
#include "text/Utf8.h"

#include <cstddef>

namespace cimhttp {

namespace {

constexpr std::size_t kLongestText = std::size_t{64} << 10U; // in bytes; far more than anybody reads in a table

/// Where a text is cut off that is too long: not within a character.
std::size_t EndOfFront(std::string_view text) {
    std::size_t end = kLongestText;
    while (end > kLongestText - kLongestUtf8 && IsContinuation(text[end])) {
        --end;
    }
    return end;
}

} // namespace

std::string TableCell::Whole() const { return isNull ? kNullText : Printable(text); }

std::string TableCell::Front() const {
    if (!IsTooLong()) {
        return Whole();
    }
    const std::size_t end = EndOfFront(text);
    return Printable(text.substr(0, end)) + "… (" + std::to_string(text.size() - end) + " more bytes)";
}

bool TableCell::IsTooLong() const { return text.size() > kLongestText; }

} // namespace cimhttp
