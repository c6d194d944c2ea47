#include "Failure.h"
#include "Options.h"
#include "commands/Commands.h"
#include "commands/ListingWriter.h"
#include "commands/Remarks.h"
#include "connection/ServerSchema.h"
#include "output/Listing.h"
#include "selection/RowLimit.h"
#include "selection/SortOrder.h"
#include "survey/InstanceCensus.h"
#include "table/TableCell.h"
#include "text/Names.h"
#include "text/TerminalText.h"
#include "text/WordList.h"

#include <algorithm>
#include <ostream>

namespace cimhttp {

namespace {

using NQORVYX20::TCIMValue;
using Count = InstanceCensus::Count;

constexpr const char* kClass = "Class";
constexpr const char* kCount = "Count";

void CheckOrder(const SortOrder& order) {
    for (const std::string& name : order.Names()) {
        if (!IsSameName(name, kClass) && !IsSameName(name, kCount)) {
            throw Failure(Failure::kUsage, "'" + name + "' is nothing to sort counts by: there are class and count");
        }
    }
}

TCIMValue ValueOf(const Count& count) { return count.instances ? TCIMValue(*count.instances) : TCIMValue(); }

std::vector<Count> Sorted(const std::vector<Count>& counts, const SortOrder& order) {
    std::vector<std::vector<TCIMValue>> rows;
    rows.reserve(counts.size());
    for (const Count& count : counts) {
        auto& row = rows.emplace_back();
        for (const std::string& name : order.Names()) {
            row.push_back(IsSameName(name, kClass) ? TCIMValue(count.name) : ValueOf(count));
        }
    }
    return Ordered(counts, order.Sorted(rows));
}

void RemoveClassesWithoutInstances(std::vector<Count>& counts) {
    counts.erase(
        std::remove_if(counts.begin(), counts.end(), [](const Count& count) { return count.instances == 0ULL; }),
        counts.end());
}

Listing CountListing(const std::vector<Count>& counts) {
    Listing listing({Listing::Key(kClass), {kCount, Listing::Align::kRight, Listing::Importance::kKey}});
    for (const Count& count : counts) {
        listing.AddRow(
            {count.name, Cell(ValueOf(count), count.instances ? std::to_string(*count.instances) : std::string())});
    }
    return listing;
}

void WriteLines(const std::vector<Count>& counts, std::ostream& output) {
    for (const Count& count : counts) {
        output << Printable(count.name) << ' ' << (count.instances ? std::to_string(*count.instances) : kNullText)
               << '\n';
    }
}

std::size_t NumberOfUncounted(const std::vector<Count>& counts) {
    return static_cast<std::size_t>(
        std::count_if(counts.begin(), counts.end(), [](const Count& count) { return !count.instances; }));
}

std::string TotalOf(const std::vector<Count>& counts) {
    unsigned long long instances = 0;
    unsigned long long classes = 0;
    for (const Count& count : counts) {
        instances += count.instances.value_or(0);
        classes += count.instances.value_or(0) > 0 ? 1 : 0;
    }
    return (NumberOfUncounted(counts) == 0 ? "" : "at least ") + Counted(instances, "instance", "instances") + " of " +
           Counted(classes, "class", "classes");
}

int ReportFailures(const std::vector<std::string>& failures, std::size_t uncounted, std::ostream& errors) {
    for (const std::string& failure : failures) {
        errors << "cimhttp: " << Printable(failure) << '\n';
    }
    if (uncounted == 0) {
        return 0;
    }
    errors << "cimhttp: " << Counted(uncounted, "class", "classes") << " could not be counted" << std::endl;
    return Failure::kIncomplete;
}

/// `count [PATTERN]`: how many instances each class has, without those of its subclasses.
class CountCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {"count",
                "Count the instances of each class",
                {{"PATTERN", "Only classes that match, such as 'CIM_*Port'; case does not matter", false, &pattern_}},
                {{"--all", "", "Show classes without instances, too", &all_},
                 {"--sort", "COLUMN",
                  "Sort by class or count, with COLUMN:desc the greatest first; may be given as A,B", &order_},
                 {"--limit", "N", "Show the first N classes only", &limit_}},
                {OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
                "cimhttp --host server.example count '*port' --sort count:desc",
                "An instance counts for its own class, not for those above it. Only names are read, no values."};
    }

    int Run(const CommandContext& context) override {
        const SortOrder order(order_);
        CheckOrder(order);
        RowLimit limit(limit_);
        Session session = context.Connect();
        const auto classes = ServerSchema(session).Hierarchy();
        const ClassTree tree(classes);
        InstanceCensus census(session, tree,
                              [&](const std::string& name) { return pattern_.empty() || Matches(pattern_, name); });
        auto counts = census.Take();
        if (counts.empty() && !classes.empty()) {
            SayThatNoClassMatches(pattern_, classes.size(), context.errors);
        }
        const std::string total = TotalOf(counts);
        const std::size_t uncounted = NumberOfUncounted(counts);
        if (!all_) {
            RemoveClassesWithoutInstances(counts);
        }
        counts = Sorted(counts, order);
        limit.Apply(counts);
        Write(counts, context);
        if (context.Format(*this) == OutputFormat::kTable) {
            context.output << (counts.empty() ? "" : "\n") << total << '\n';
        }
        context.output.flush();
        limit.Report("classes", context.errors);
        const int status = ReportFailures(census.Failures(), uncounted, context.errors);
        return std::max(status, ReportIncidents(session.TakeIncidents(), context));
    }

  private:
    void Write(const std::vector<InstanceCensus::Count>& counts, const CommandContext& context) {
        const OutputFormat format = context.Format(*this);
        if (format == OutputFormat::kPlain) {
            WriteLines(counts, context.output);
        } else if (format != OutputFormat::kTable || !counts.empty()) {
            WriteListing(CountListing(counts), format, context);
        }
    }

    std::string pattern_;
    std::vector<std::string> order_;
    std::optional<std::size_t> limit_; ///< see RowLimit
    bool all_ = false;                 ///< with the classes that have no instance
};

} // namespace

std::unique_ptr<Command> MakeCountCommand() { return std::make_unique<CountCommand>(); }

} // namespace cimhttp
