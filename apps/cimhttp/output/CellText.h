#pragma once

#include <string>

namespace cimhttp {

struct Cell;

/// A cell's text, safe to show; an en dash for a null without a text of its own.
std::string CellText(const Cell& cell);

/// The same for a table, where a text of more than 64 KiB is cut off with a mark that says how much is missing.
std::string TableCellText(const Cell& cell);

/// True for a text that TableCellText() cuts off.
bool IsCutInTable(const Cell& cell);

/// A heading, cut off in the same way.
std::string TableHeading(const std::string& heading);

/// True for what CellText() shows as an en dash because it is null.
bool IsShownAsNull(const Cell& cell);

} // namespace cimhttp
