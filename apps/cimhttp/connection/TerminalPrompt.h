#pragma once

#include <optional>
#include <string>

namespace cimhttp {

// Questions are asked on the terminal that controls the process, whatever the standard streams are connected to, and
// wait for a line. The terminal is as it was afterwards, also when a signal ends the program meanwhile or stops it for
// a while. Nothing without a terminal, and when the input ends without a line. The question must be safe to show.

/// What is typed does not show.
std::optional<std::string> AskForPassword(const std::string& question);

/// What is typed shows; what was typed before the question does not count.
std::optional<std::string> AskForAnswer(const std::string& question);

} // namespace cimhttp
