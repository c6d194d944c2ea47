#include "commands/Remarks.h"

#include "Failure.h"
#include "Options.h"
#include "commands/Command.h"
#include "connection/IncidentTally.h"
#include "text/TerminalText.h"

#include <ostream>

namespace cimhttp {

int ReportRemark(const std::string& remark, const CommandContext& context) {
    if (remark.empty()) {
        return 0;
    }
    context.output.flush();
    context.errors << "cimhttp: " << Printable(remark) << std::endl;
    return Failure::kIncomplete;
}

int ReportIncidents(const IncidentTally& incidents, const CommandContext& context) {
    if (incidents.IsEmpty()) {
        return 0;
    }
    const auto level = context.options.logLevel;
    const bool listsAll = level && *level >= NQORVYX20::ILogger::eLogWarning;
    return ReportRemark(incidents.Text() + (listsAll ? "" : "; --log warning lists all"), context);
}

} // namespace cimhttp
