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
