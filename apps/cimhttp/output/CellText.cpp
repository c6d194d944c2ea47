#include "output/CellText.h"

#include "output/Listing.h"
#include "output/NullText.h"
#include "text/TerminalText.h"

namespace cimhttp {

std::string CellText(const Cell& cell) { return IsShownAsNull(cell) ? kNullText : Printable(cell.text); }

bool IsShownAsNull(const Cell& cell) { return cell.value.IsNull() && cell.text.empty(); }

} // namespace cimhttp
