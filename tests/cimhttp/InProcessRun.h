#pragma once

#include "support/ProgramRun.h"

#include <string>
#include <vector>

/// Runs the whole program in this process, which saves the time that a process takes; see cimhttp::RunProgram. The
/// plug-in is the built one.
support::ProgramRun RunInProcess(std::vector<std::string> arguments);
