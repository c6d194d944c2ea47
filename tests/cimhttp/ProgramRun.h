#pragma once

#include <string>
#include <vector>

/// What one run of the program ended with.
struct ProgramRun {
    int status = -1;
    std::string output;
    std::string errors;
};

/// Runs the built program with these arguments and waits for its end. `environment` has entries like "NAME=value"; the
/// program sees them and PATH, nothing else.
ProgramRun RunCimhttp(const std::vector<std::string>& arguments, const std::vector<std::string>& environment = {});

/// The same with a terminal as the error stream; `errors` is what the terminal got, with its line ends.
ProgramRun RunCimhttpOnTerminal(const std::vector<std::string>& arguments);

/// The content of a file; empty when there is none.
std::string ReadFile(const std::string& path);
