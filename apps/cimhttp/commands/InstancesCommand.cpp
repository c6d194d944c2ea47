#include "commands/InstancesCommand.h"

#include <algorithm>
#include <ostream>

#include "Failure.h"
#include "Options.h"
#include "commands/IncidentReport.h"
#include "commands/InstanceReader.h"
#include "commands/InstanceWriter.h"
#include "commands/ListingWriter.h"
#include "connection/Session.h"
#include "output/Json.h"
#include "output/Listing.h"
#include "text/ClassInPath.h"
#include "text/Pattern.h"
#include "text/TerminalText.h"

namespace cimhttp {

namespace {

bool IsForPeople(OutputFormat format) { return format == OutputFormat::kTable || format == OutputFormat::kPlain; }

void SayThatNoneMatches(std::size_t count, std::ostream& errors) {
    errors << "cimhttp: no instance matches; without --where there "
           << (count == 1 ? "is 1" : "are " + std::to_string(count)) << '\n';
}

void WriteCsv(const std::vector<std::string>& paths, const CommandContext& context) {
    Listing listing({{"Path"}});
    for (const std::string& path : paths) {
        listing.AddRow({path});
    }
    WriteListing(listing, OutputFormat::kCsv, context);
}

void WriteLines(const std::vector<std::string>& paths, std::ostream& output) {
    for (const std::string& path : paths) {
        output << Printable(path) << '\n';
    }
}

} // namespace

CommandDescription InstancesCommand::Describe() {
    return {
        "instances",
        "Show the instances of a class and its subclasses",
        {{"NAME", "The class", true, &name_}},
        {{"--property", "NAME", "Show only this property; may be given several times, or as A,B", &properties_},
         {"--where", "PROPERTY=VALUE",
          "Show only instances with this value, as it is or as it is shown; it may be a pattern such as 'eth*', and "
          "case does not matter; may be given several times",
          &conditions_},
         {"--exact", "", "Leave out the instances of subclasses", &exact_},
         {"--deep", "", "Show what subclasses add to the properties of the class, too; not in a table", &deep_},
         {"--paths", "", "Show nothing but the paths, one a line", &paths_},
         {"--raw", "", "Show values as they are, not by their value maps and units", &raw_}},
        {OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv, OutputFormat::kMof},
        "cimhttp --host server.example instances CIM_NetworkPort --where 'Name=eth*'"};
}

int InstancesCommand::Run(const CommandContext& context) {
    if (paths_) {
        return WritePaths(context);
    }
    const InstanceQuery query(properties_, conditions_);
    const Session session = context.Connect();
    InstanceReader reader(session, name_, query, !exact_);
    const OutputFormat format = context.Format(*this);
    const auto [properties, instances, count] = reader.Read();
    const bool is_asked = query.NamesProperties();
    if (instances.empty() && count > 0) {
        SayThatNoneMatches(count, context.errors);
    }
    if (!instances.empty() || count == 0 || !IsForPeople(format)) { // programs get an empty list
        WriteInstances(instances, {properties, is_asked, !is_asked, deep_ && !is_asked, raw_, {}}, format,
                       session.LoadedPlugin().Access(), context);
    }
    return ReportIncidents(reader.TakeIncidents(), context);
}

/// Complains about what a list of paths has no use for.
void InstancesCommand::CheckPathOptions(const CommandContext& context) const {
    if (!properties_.empty() || !conditions_.empty() || deep_ || raw_) {
        throw Failure(Failure::kUsage, "--paths reads no values: leave out --property, --where, --deep and --raw");
    }
    if (context.options.format == OutputFormat::kMof) {
        throw Failure(Failure::kUsage, "--paths has no mof");
    }
}

int InstancesCommand::WritePaths(const CommandContext& context) {
    CheckPathOptions(context);
    Session session = context.Connect();
    auto paths = session.InstancePaths(name_);
    if (exact_) {
        paths.erase(std::remove_if(paths.begin(), paths.end(),
                                   [&](const auto& path) { return !IsSameName(ClassInPath(path), name_); }),
                    paths.end());
    }
    std::sort(paths.begin(), paths.end());
    switch (context.Format(*this)) {
    case OutputFormat::kJson:
        context.output << JsonTexts(paths) << '\n';
        break;
    case OutputFormat::kCsv:
        WriteCsv(paths, context);
        break;
    default:
        WriteLines(paths, context.output);
    }
    return ReportIncidents(session.TakeIncidents(), context);
}

} // namespace cimhttp
