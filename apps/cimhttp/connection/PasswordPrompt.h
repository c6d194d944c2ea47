#pragma once

#include <optional>
#include <string>

namespace cimhttp {

/// Asks for a password on the terminal that controls the process, whatever the standard streams are connected to. What
/// is typed does not show. The terminal is as it was afterwards, also when a signal ends the program meanwhile or
/// stops it for a while.
/// Nothing without a terminal, and when the input ends without a line.
std::optional<std::string> AskForPassword(const std::string& question);

} // namespace cimhttp
