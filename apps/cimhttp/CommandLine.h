#pragma once

#include <string>

#include "Options.h"

namespace cimhttp {

struct ParsedCommandLine {
    Options options;
    std::string help; ///< not empty: print this text and do nothing else
};

/// Reads the command line, the password file and the variables CIMHTTP_PASSWORD and COLUMNS.
/// Throws Failure(kUsage) with one line that names what is wrong.
ParsedCommandLine ParseCommandLine(int argc, const char* const* argv);

} // namespace cimhttp
