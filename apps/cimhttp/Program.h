#pragma once

#include <iosfwd>

namespace cimhttp {

/// The whole program: reads the command line, loads the plug-in, connects, runs the command. Returns the exit status:
/// 0 success, 2 usage, 3 no connection, 7 a collection that lacks a class, 1 any other failure. A failure is one line
/// on `errors`.
int RunProgram(int argc, const char* const* argv, std::ostream& output, std::ostream& errors);

} // namespace cimhttp
