#include "output/CellText.h"

#include "output/Listing.h"
#include "text/TerminalText.h"

namespace cimhttp {

std::string CellText(const Cell& cell) { return IsShownAsNull(cell) ? "-" : Printable(cell.text); }

bool IsShownAsNull(const Cell& cell) { return cell.value.IsNull() && cell.text.empty(); }

} // namespace cimhttp
