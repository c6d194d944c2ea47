#include "commands/WideForm.h"

#include "Failure.h"
#include "Options.h"
#include "commands/Command.h"

namespace cimhttp {

OutputFormat FormOf(Command& command, bool isWide, const CommandContext& context) {
    if (!isWide) {
        return context.Format(command);
    }
    if (context.options.format.value_or(OutputFormat::kCsv) != OutputFormat::kCsv) {
        throw Failure(Failure::kUsage, "--wide is a form of csv, which need not be asked for");
    }
    return OutputFormat::kCsv;
}

} // namespace cimhttp
