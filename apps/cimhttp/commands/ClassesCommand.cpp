#include "commands/ClassesCommand.h"

#include <algorithm>
#include <ostream>

#include "commands/ListingWriter.h"
#include "connection/Session.h"
#include "output/Json.h"
#include "output/Listing.h"
#include "text/Pattern.h"
#include "text/TerminalText.h"

namespace cimhttp {

namespace {

std::vector<std::string> Selected(std::vector<std::string> names, const std::string& pattern) {
    names.erase(std::remove_if(names.begin(), names.end(),
                               [&](const std::string& name) { return !pattern.empty() && !Matches(pattern, name); }),
                names.end());
    std::sort(names.begin(), names.end());
    return names;
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
            {},
            {OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
            "cimhttp --host server.example classes '*port'"};
}

int ClassesCommand::Run(const CommandContext& context) {
    const auto names = Selected(context.Connect().ClassNames(), pattern_);
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
    return 0;
}

} // namespace cimhttp
