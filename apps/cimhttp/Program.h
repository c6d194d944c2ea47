#pragma once

#include <iosfwd>

namespace cimhttp {

/// The whole program: reads the command line, loads the plug-in, connects, runs the command. Returns the exit status:
/// 0, or that of the Failure, which is one line on `errors`.
int RunProgram(int argc, const char* const* argv, std::ostream& output, std::ostream& errors);

} // namespace cimhttp
