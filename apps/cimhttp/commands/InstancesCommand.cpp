#include "Failure.h"
#include "Options.h"
#include "commands/Commands.h"
#include "commands/FleetContext.h"
#include "commands/FleetReading.h"
#include "commands/InstanceQuery.h"
#include "commands/InstanceReader.h"
#include "commands/InstanceWriter.h"
#include "commands/ListingWriter.h"
#include "commands/Remarks.h"
#include "connection/ServerInstances.h"
#include "connection/Session.h"
#include "host/TCIMReference.h"
#include "output/DisplayText.h"
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

bool IsForPeople(OutputFormat format) { return format == OutputFormat::kTable || format == OutputFormat::kPlain; }

/// As `instance --key` takes them, a key a line.
void WriteKeyLines(const std::vector<TCIMReference>& paths, std::ostream& output) {
    const char* separator = "";
    for (const TCIMReference& path : paths) {
        output << separator;
        path.EnumerateKeyValues([&](const std::string& name, const TCIMValue& value) {
            output << Printable(name) << '=' << Printable(PlainText(value)) << '\n';
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
        WriteKeysJson(paths, context.output);
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

/// `instances NAME`: the instances of a class and its subclasses. A table has the properties asked for as columns, or
/// all of the class that have something to show, the keys first.
class InstancesCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {
            "instances",
            "Show the instances of a class and its subclasses",
            {{"NAME", "The class", true, &name_}},
            {{"--property", "NAME", "Show only this property; may be given several times, or as A,B", &properties_},
             {"--where", "PROPERTY=VALUE",
              "Show only instances with this value, as it is or as it is shown; it may be a pattern such as 'eth*', "
              "and case does not matter; != for the others; <, <=, > and >= compare numbers, times and texts; may be "
              "given several times",
              &conditions_},
             {"--sort", "NAME",
              "Sort by this property, with NAME:desc the greatest first; null comes last; may be given several times, "
              "or as A,B:desc",
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

    int Run(const CommandContext& context) override {
        if (paths_ || keys_) {
            return WriteNames(context);
        }
        const InstanceQuery query(properties_, conditions_, order_);
        RowLimit limit(limit_);
        const OutputFormat format = context.Format(*this, wide_);
        const Session session = context.Connect();
        InstanceReader reader(session, name_, query, !exact_, context.options.textForm);
        const auto uncompared = limit_ || !reader.CanStream()
                                    ? WriteAll(reader, query, limit, format, session, context)
                                    : WriteEach(reader, query, limit, format, session, context);
        context.output.flush(); // on a terminal, the remarks stand below
        limit.Report("instances", context.errors);
        uncompared.Report(context.errors);
        return ReportIncidents(reader.TakeIncidents(), context);
    }

    int RunForFleet(const FleetContext& context) override {
        const CommandContext whole{context.options, context.output, context.errors};
        return ReadFleet(*this, context, whole.Format(*this, wide_));
    }

  private:
    /// Writes the instances when all have arrived.
    UncomparedValues WriteAll(InstanceReader& reader, const InstanceQuery& query, RowLimit& limit, OutputFormat format,
                              const Session& session, const CommandContext& context) const {
        auto [properties, instances, count, uncompared] = reader.Read();
        if (instances.empty() && count > 0) {
            SayThatNoInstanceMatches(count, context.errors);
        }
        limit.Apply(instances);
        if (!instances.empty() || count == 0 || !IsForPeople(format)) { // programs get an empty list
            WriteInstances(instances, SelectionOf(properties, query), format, session.Access(), context);
        }
        return uncompared;
    }

    /// Writes the instances as they arrive, where the form allows that.
    UncomparedValues WriteEach(InstanceReader& reader, const InstanceQuery& query, RowLimit& limit, OutputFormat format,
                               const Session& session, const CommandContext& context) const {
        const InstanceSelection selection = SelectionOf(reader.Shown(), query);
        const auto sink =
            MakeGrowingSink(selection, format, ValueTexts(session.Access(), context.options.textForm), context);
        if (!sink) {
            return WriteAll(reader, query, limit, format, session, context);
        }
        std::size_t written = 0;
        const auto reading = reader.Stream(context.options.server ? kHeldOfEachServer : kHeldOfTheOnlyServer,
                                           [&](const Instances& instances) {
                                               sink->Add(instances);
                                               written += instances.size();
                                           });
        if (written == 0 && reading.count > 0) {
            SayThatNoInstanceMatches(reading.count, context.errors);
        }
        if (written > 0 || reading.count == 0 || !IsForPeople(format)) {
            sink->End();
        }
        return reading.uncompared;
    }

    InstanceSelection SelectionOf(const Properties& properties, const InstanceQuery& query) const {
        const bool isAsked = query.NamesProperties();
        return {properties, isAsked, !isAsked, deep_ && !isAsked, raw_, {}, wide_};
    }

    int WriteNames(const CommandContext& context) {
        CheckNameOptions(context);
        RowLimit limit(limit_);
        Session session = context.Connect();
        auto names = ReadNames(session);
        limit.Apply(names);
        if (paths_) {
            WriteTexts("Path", PathTexts(names), context.Format(*this), context);
        } else {
            WriteKeys(names, context.Format(*this), context);
        }
        context.output.flush();
        limit.Report("instances", context.errors);
        return ReportIncidents(session.TakeIncidents(), context);
    }

    /// Refuses options that have no effect on a list of paths or keys.
    void CheckNameOptions(const CommandContext& context) const {
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

    /// The paths of the instances, in their order.
    std::vector<NQORVYX20::TCIMReference> ReadNames(Session& session) const {
        auto names = ServerInstances(session).PathsOf(name_);
        if (exact_) {
            names.erase(std::remove_if(names.begin(), names.end(),
                                       [&](const auto& path) { return !IsSameName(path.GetClassName(), name_); }),
                        names.end());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    std::string name_;
    std::vector<std::string> properties_; ///< see InstanceQuery, here and below
    std::vector<std::string> conditions_;
    std::vector<std::string> order_;
    std::optional<std::size_t> limit_; ///< see RowLimit
    bool exact_ = false;               ///< without the instances of subclasses
    bool deep_ = false;                ///< with the properties that subclasses add
    bool paths_ = false;               ///< the paths alone
    bool keys_ = false;                ///< the keys alone
    bool wide_ = false;                ///< see WideRecords()
    bool raw_ = false;                 ///< values as they are, not as people read them
};

} // namespace

std::unique_ptr<Command> MakeInstancesCommand() { return std::make_unique<InstancesCommand>(); }

} // namespace cimhttp
