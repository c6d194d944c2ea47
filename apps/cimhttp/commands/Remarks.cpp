#include "commands/Remarks.h"

#include "Failure.h"
#include "Options.h"
#include "commands/Command.h"
#include "connection/IncidentTally.h"
#include "text/TerminalText.h"

#include <ostream>

namespace cimhttp {

namespace {

void SayThatNoneMatches(const char* thing, const char* restriction, std::size_t count, const std::string& hint,
                        std::ostream& errors) {
    errors << "cimhttp: no " << thing << " matches; without " << restriction << " there "
           << (count == 1 ? "is 1" : "are " + std::to_string(count)) << hint << '\n';
}

} // namespace

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

void SayThatNoClassMatches(const std::string& pattern, std::size_t count, std::ostream& errors) {
    const bool isPattern = pattern.find_first_of("*?") != std::string::npos;
    const std::string hint = isPattern ? "" : " (a part of a name is '*" + Printable(pattern) + "*')";
    SayThatNoneMatches("class", "the pattern", count, hint, errors);
}

void SayThatNoInstanceMatches(std::size_t count, std::ostream& errors) {
    SayThatNoneMatches("instance", "--where", count, "", errors);
}

} // namespace cimhttp
