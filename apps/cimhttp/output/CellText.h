#pragma once

#include <string>

namespace cimhttp {

struct Cell;

/// A cell's text, safe to show; an en dash for a null without a text of its own.
std::string CellText(const Cell& cell);

/// True for what CellText() shows as an en dash because it is null.
bool IsShownAsNull(const Cell& cell);

} // namespace cimhttp
