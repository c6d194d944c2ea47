#pragma once

#include <string>
#include <vector>

namespace support {

/// What one run of a program ended with.
struct ProgramRun {
    int status = -1; ///< the exit status; -1 when a signal ended it, 127 when it could not be started
    std::string output;
    std::string errors;
};

/// Runs a program, found by its path, with these arguments and waits for its end. `environment` has entries like
/// "NAME=value"; the program sees them and what each ProgramStart adds, nothing else, and has no terminal.
ProgramRun RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                      const std::vector<std::string>& environment = {});

/// Runs a program whose error stream is a terminal, whose text `errors` gets, line ends and all. Skips without one.
ProgramRun RunProgramOnTerminal(const std::string& program, const std::vector<std::string>& arguments);

/// The path of a program that the search path leads to; empty when there is none.
std::string FindProgram(const std::string& name);

/// The content of a file; empty when there is none.
std::string ReadFile(const std::string& path);

} // namespace support
