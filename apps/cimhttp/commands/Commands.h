#pragma once

#include <memory>
#include <vector>

#include "commands/Command.h"

namespace cimhttp {

/// Every command of the program, in the order of the help.
std::vector<std::unique_ptr<Command>> AllCommands();

} // namespace cimhttp
