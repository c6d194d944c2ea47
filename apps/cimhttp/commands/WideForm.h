#pragma once

#include "output/OutputFormat.h"

namespace cimhttp {

struct CommandContext;
class Command;

/// The form to write. `--wide` is one of CSV, which then need not be asked for; throws Failure(kUsage) when another
/// form is.
OutputFormat FormOf(Command& command, bool isWide, const CommandContext& context);

} // namespace cimhttp
