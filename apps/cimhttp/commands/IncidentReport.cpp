#include "commands/IncidentReport.h"

#include "Failure.h"
#include "Options.h"
#include "commands/Command.h"
#include "connection/IncidentTally.h"
#include "text/TerminalText.h"

#include <ostream>

namespace cimhttp {

namespace {

bool ListsAll(const Options& options) {
    return options.logLevel && *options.logLevel >= NQORVYX20::ILogger::eLogWarning;
}

} // namespace

int ReportIncidents(const IncidentTally& incidents, const CommandContext& context) {
    if (incidents.IsEmpty()) {
        return 0;
    }
    context.output.flush();
    context.errors << "cimhttp: " << Printable(incidents.Text())
                   << (ListsAll(context.options) ? "" : "; --log warning lists all") << std::endl;
    return Failure::kIncomplete;
}

} // namespace cimhttp
