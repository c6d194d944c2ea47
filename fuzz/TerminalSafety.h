#pragma once

#include <string_view>

/// Ends the program when a text steers the terminal that it is written to, or deceives who reads it there: when it is
/// not good UTF-8, or has a control character that is neither the end of a line nor, in a text with colours, the
/// beginning of one of the program's own, or a character that turns the direction of writing or takes no room. It knows
/// nothing of how the program prevents that.
void RequireSafeForTerminals(std::string_view text, bool hasColors);
