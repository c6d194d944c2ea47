#pragma once

#include "Options.h"
#include "commands/Command.h"

#include <memory>
#include <string>
#include <vector>

namespace cimhttp {

using Commands = std::vector<std::unique_ptr<Command>>;

struct ParsedCommandLine {
    Options options;
    Command* command;    ///< the one of the commands that was asked for, its arguments filled in
    std::string help;    ///< or another answer about the program; not empty: print it and do nothing else
    std::string warning; ///< a line for the user before anything else is done; empty for none
};

/// Reads the command line of a program with these commands, the password file, the size of the terminal and the
/// variables CIMHTTP_PASSWORD, COLUMNS, NO_COLOR and TERM. Throws Failure(kUsage) with one line that names what is
/// wrong. `asked` becomes the command that was asked for, where that can be told, then too; it is left as it is
/// otherwise.
ParsedCommandLine ParseCommandLine(int argc, const char* const* argv, const Commands& commands, const Command*& asked);

} // namespace cimhttp
