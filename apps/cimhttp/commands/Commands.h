#pragma once

#include "commands/Command.h"

#include <memory>
#include <vector>

namespace cimhttp {

/// Every command of the program, in the order of the help.
std::vector<std::unique_ptr<Command>> AllCommands();

} // namespace cimhttp
