#include "commands/Commands.h"
#include "commands/ListingWriter.h"
#include "commands/Remarks.h"
#include "connection/ServerSchema.h"
#include "connection/Session.h"
#include "selection/RowLimit.h"
#include "text/Names.h"

#include <algorithm>
#include <ostream>

namespace cimhttp {

namespace {

std::vector<std::string> Selected(const std::vector<std::string>& names, const std::string& pattern) {
    std::vector<std::string> selected;
    std::copy_if(names.begin(), names.end(), std::back_inserter(selected),
                 [&](const std::string& name) { return pattern.empty() || Matches(pattern, name); });
    std::sort(selected.begin(), selected.end());
    return selected;
}

/// `classes [PATTERN]`: the names of the server's classes, in alphabetical order.
class ClassesCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {"classes",
                "List the names of the server's classes",
                {{"PATTERN", "Only names that match, such as 'CIM_*Port'; case does not matter", false, &pattern_}},
                {{"--limit", "N", "Show the first N classes only", &limit_}},
                {OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
                "cimhttp --host server.example classes '*port'"};
    }

    int Run(const CommandContext& context) override {
        RowLimit limit(limit_);
        Session session = context.Connect();
        const auto all = ServerSchema(session).ClassNames();
        auto names = Selected(all, pattern_);
        if (names.empty() && !all.empty()) {
            SayThatNoClassMatches(pattern_, all.size(), context.errors);
        }
        limit.Apply(names);
        WriteTexts("Name", names, context.Format(*this), context);
        context.output.flush();
        limit.Report("classes", context.errors);
        return ReportIncidents(session.TakeIncidents(), context);
    }

  private:
    std::string pattern_;
    std::optional<std::size_t> limit_; ///< see RowLimit
};

} // namespace

std::unique_ptr<Command> MakeClassesCommand() { return std::make_unique<ClassesCommand>(); }

} // namespace cimhttp
