#include "output/CellText.h"

#include "output/Listing.h"
#include "output/NullText.h"
#include "text/TerminalText.h"
#include "text/Utf8.h"

#include <cstddef>
#include <string_view>

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

std::string Front(const std::string& text) {
    if (text.size() <= kLongestText) {
        return Printable(text);
    }
    const std::size_t end = EndOfFront(text);
    return Printable(std::string_view(text).substr(0, end)) + "… (" + std::to_string(text.size() - end) +
           " more bytes)";
}

} // namespace

std::string TableCellText(const Cell& cell) { return IsShownAsNull(cell) ? kNullText : Front(cell.text); }

bool IsCutInTable(const Cell& cell) { return cell.text.size() > kLongestText; }

std::string TableHeading(const std::string& heading) { return Front(heading); }

std::string CellText(const Cell& cell) { return IsShownAsNull(cell) ? kNullText : Printable(cell.text); }

bool IsShownAsNull(const Cell& cell) { return cell.value.IsNull() && cell.text.empty(); }

} // namespace cimhttp
