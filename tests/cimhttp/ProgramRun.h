#pragma once

#include "support/ProgramRun.h"

#include <string>
#include <vector>

using support::ProgramRun;
using support::ReadFile;

/// Runs the built cimhttp; see support::RunProgram.
inline ProgramRun RunCimhttp(const std::vector<std::string>& arguments,
                             const std::vector<std::string>& environment = {}) {
    return support::RunProgram(CIMHTTP_PROGRAM, arguments, environment);
}

/// Runs it with a terminal as the error stream; see support::RunProgramOnTerminal.
inline ProgramRun RunCimhttpOnTerminal(const std::vector<std::string>& arguments) {
    return support::RunProgramOnTerminal(CIMHTTP_PROGRAM, arguments);
}
