#include "commands/ClassesCommand.h"

#include "commands/ClassPattern.h"
#include "commands/IncidentReport.h"
#include "commands/ListingWriter.h"
#include "connection/Session.h"
#include "output/Json.h"
#include "output/Listing.h"
#include "selection/RowLimit.h"
#include "text/TerminalText.h"

#include <algorithm>
#include <ostream>

namespace cimhttp {

namespace {

std::vector<std::string> Selected(const std::vector<std::string>& names, const std::string& pattern) {
    std::vector<std::string> selected;
    std::copy_if(names.begin(), names.end(), std::back_inserter(selected),
                 [&](const std::string& name) { return IsSelected(pattern, name); });
    std::sort(selected.begin(), selected.end());
    return selected;
}

void WriteCsv(const std::vector<std::string>& names, const CommandContext& context) {
    Listing listing({{"Name"}});
    for (const std::string& name : names) {
        listing.AddRow({name});
    }
    WriteListing(listing, OutputFormat::kCsv, context);
}

} // namespace

CommandDescription ClassesCommand::Describe() {
    return {"classes",
            "List the names of the server's classes",
            {{"PATTERN", "Only names that match, such as 'CIM_*Port'; case does not matter", false, &pattern_}},
            {{"--limit", "N", "Show the first N classes only", &limit_}},
            {OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
            "cimhttp --host server.example classes '*port'"};
}

int ClassesCommand::Run(const CommandContext& context) {
    RowLimit limit(limit_);
    Session session = context.Connect();
    const auto all = session.ClassNames();
    auto names = Selected(all, pattern_);
    if (names.empty() && !all.empty()) {
        SayThatNoClassMatches(pattern_, all.size(), context.errors);
    }
    limit.Apply(names);
    Write(names, context);
    context.output.flush();
    limit.Report("classes", context.errors);
    return ReportIncidents(session.TakeIncidents(), context);
}

void ClassesCommand::Write(const std::vector<std::string>& names, const CommandContext& context) {
    switch (context.Format(*this)) {
    case OutputFormat::kJson:
        context.output << JsonTexts(names) << '\n';
        break;
    case OutputFormat::kCsv:
        WriteCsv(names, context);
        break;
    default:
        for (const std::string& name : names) {
            context.output << Printable(name) << '\n';
        }
    }
}

} // namespace cimhttp
