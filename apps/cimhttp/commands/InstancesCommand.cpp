#include "commands/InstancesCommand.h"

#include "Failure.h"
#include "Options.h"
#include "commands/IncidentReport.h"
#include "commands/InstanceReader.h"
#include "commands/InstanceSink.h"
#include "commands/InstanceWriter.h"
#include "commands/ListingWriter.h"
#include "commands/PathWriter.h"
#include "commands/WideForm.h"
#include "connection/Session.h"
#include "host/TCIMReference.h"
#include "output/KeyListing.h"
#include "selection/RowLimit.h"
#include "text/Names.h"
#include "text/TerminalText.h"

#include <algorithm>
#include <ostream>

namespace cimhttp {

using NQORVYX20::TCIMReference;
using NQORVYX20::TCIMValue;

namespace {

constexpr unsigned char kDecimal = 10;

bool IsForPeople(OutputFormat format) { return format == OutputFormat::kTable || format == OutputFormat::kPlain; }

void SayThatNoneMatches(std::size_t count, std::ostream& errors) {
    errors << "cimhttp: no instance matches; without --where there "
           << (count == 1 ? "is 1" : "are " + std::to_string(count)) << '\n';
}

std::vector<std::string> TextsOf(const std::vector<TCIMReference>& paths) {
    std::vector<std::string> texts;
    texts.reserve(paths.size());
    for (const TCIMReference& path : paths) {
        texts.push_back(path.GetPath());
    }
    return texts;
}

/// As `instance --key` takes them, a key a line.
void WriteKeyLines(const std::vector<TCIMReference>& paths, std::ostream& output) {
    const char* separator = "";
    for (const TCIMReference& path : paths) {
        output << separator;
        path.EnumerateKeyValues([&](const std::string& name, const TCIMValue& value) {
            output << Printable(name) << '=' << Printable(value.ToString(kDecimal)) << '\n';
            return true;
        });
        separator = "\n";
    }
}

void WriteKeyTable(const std::vector<TCIMReference>& paths, const CommandContext& context) {
    if (paths.empty()) {
        context.output << "no instances\n";
    } else {
        WriteListing(KeyListing(paths, HaveSeveralClasses(paths)), OutputFormat::kTable, context);
    }
}

void WriteKeys(const std::vector<TCIMReference>& paths, OutputFormat format, const CommandContext& context) {
    switch (format) {
    case OutputFormat::kJson:
        context.output << KeysJson(paths) << '\n';
        break;
    case OutputFormat::kCsv:
        WriteListing(KeyListing(paths, true), format, context);
        break;
    case OutputFormat::kPlain:
        WriteKeyLines(paths, context.output);
        break;
    default:
        WriteKeyTable(paths, context);
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
          "case does not matter; != for the others; <, <=, > and >= compare numbers, times and texts; may be given "
          "several times",
          &conditions_},
         {"--sort", "NAME",
          "Sort by this property, with NAME:desc the greatest first; null comes last; may be given several times, or "
          "as A,B:desc",
          &order_},
         {"--limit", "N", "Show the first N instances only", &limit_},
         {"--exact", "", "Leave out the instances of subclasses", &exact_},
         {"--deep", "", "Show what subclasses add to the properties of the class, too; not in a table", &deep_},
         {"--paths", "", "Show nothing but the paths, one a line", &paths_},
         {"--keys", "", "Show nothing but the keys, as 'instance' takes them", &keys_},
         {"--wide", "", "Write CSV with an instance a row and a property a column", &wide_},
         {"--raw", "", "Show values as they are, not by their value maps and units", &raw_}},
        {OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv, OutputFormat::kMof},
        "cimhttp --host server.example instances CIM_NetworkPort --where 'Name=eth*'"};
}

int InstancesCommand::Run(const CommandContext& context) {
    if (paths_ || keys_) {
        return WriteNames(context);
    }
    const InstanceQuery query(properties_, conditions_, order_);
    RowLimit limit(limit_);
    const OutputFormat format = FormOf(*this, wide_, context);
    const Session session = context.Connect();
    InstanceReader reader(session, name_, query, !exact_, context.options.textForm);
    const auto uncompared = limit_ || !reader.CanStream() ? WriteAll(reader, query, limit, format, session, context)
                                                          : WriteEach(reader, query, format, session, context);
    context.output.flush(); // on a terminal, the remarks stand below
    limit.Report("instances", context.errors);
    uncompared.Report(context.errors);
    return ReportIncidents(reader.TakeIncidents(), context);
}

/// When all are there.
UncomparedValues InstancesCommand::WriteAll(InstanceReader& reader, const InstanceQuery& query, RowLimit& limit,
                                            OutputFormat format, const Session& session,
                                            const CommandContext& context) const {
    auto [properties, instances, count, uncompared] = reader.Read();
    if (instances.empty() && count > 0) {
        SayThatNoneMatches(count, context.errors);
    }
    limit.Apply(instances);
    if (!instances.empty() || count == 0 || !IsForPeople(format)) { // programs get an empty list
        WriteInstances(instances, SelectionOf(properties, query), format, session.LoadedPlugin().Access(), context);
    }
    return uncompared;
}

/// As they come, where the form allows that.
UncomparedValues InstancesCommand::WriteEach(InstanceReader& reader, const InstanceQuery& query, OutputFormat format,
                                             const Session& session, const CommandContext& context) const {
    const InstanceSelection selection = SelectionOf(reader.Shown(), query);
    const auto sink = MakeInstanceSink(selection, format,
                                       ValueTexts(session.LoadedPlugin().Access(), context.options.textForm), context);
    if (!sink) {
        RowLimit all{std::nullopt};
        return WriteAll(reader, query, all, format, session, context);
    }
    std::size_t written = 0;
    const auto reading = reader.Stream([&](const Instances& instances) {
        sink->Add(instances);
        written += instances.size();
    });
    if (written == 0 && reading.count > 0) {
        SayThatNoneMatches(reading.count, context.errors);
    }
    sink->End();
    return reading.uncompared;
}

InstanceSelection InstancesCommand::SelectionOf(const Properties& properties, const InstanceQuery& query) const {
    const bool isAsked = query.NamesProperties();
    return {properties, isAsked, !isAsked, deep_ && !isAsked, raw_, {}, wide_};
}

/// Complains about what a list of paths or keys has no use for.
void InstancesCommand::CheckNameOptions(const CommandContext& context) const {
    const std::string option = paths_ ? "--paths" : "--keys";
    if (paths_ && keys_) {
        throw Failure(Failure::kUsage, "give --paths or --keys, not both");
    }
    if (!properties_.empty() || !conditions_.empty() || !order_.empty() || deep_ || raw_ || wide_) {
        throw Failure(Failure::kUsage, option + " reads no values: leave out --property, --where, --sort, --deep, "
                                                "--wide and --raw");
    }
    if (context.options.format == OutputFormat::kMof) {
        throw Failure(Failure::kUsage, option + " has no mof");
    }
}

/// In the order of the paths.
std::vector<TCIMReference> InstancesCommand::ReadNames(Session& session) const {
    auto names = session.InstancePaths(name_);
    if (exact_) {
        names.erase(std::remove_if(names.begin(), names.end(),
                                   [&](const auto& path) { return !IsSameName(path.GetClassName(), name_); }),
                    names.end());
    }
    std::sort(names.begin(), names.end());
    return names;
}

int InstancesCommand::WriteNames(const CommandContext& context) {
    CheckNameOptions(context);
    RowLimit limit(limit_);
    Session session = context.Connect();
    auto names = ReadNames(session);
    limit.Apply(names);
    if (paths_) {
        WritePaths(TextsOf(names), context.Format(*this), context);
    } else {
        WriteKeys(names, context.Format(*this), context);
    }
    context.output.flush();
    limit.Report("instances", context.errors);
    return ReportIncidents(session.TakeIncidents(), context);
}

} // namespace cimhttp
