#include "commands/ProfilesCommand.h"

#include "Options.h"
#include "commands/IncidentReport.h"
#include "commands/ListingWriter.h"
#include "commands/Remark.h"
#include "connection/ProfileSearch.h"
#include "connection/Session.h"
#include "output/Json.h"
#include "output/Listing.h"

#include <algorithm>
#include <ostream>

namespace cimhttp {

namespace {

std::string JsonOrNull(const std::optional<std::string>& text) { return text ? JsonText(*text) : "null"; }

Cell CellOf(const std::optional<std::string>& text) { return text ? Cell(*text) : Cell::Null(); }

/// Lists of paths are JSON in CSV, so that they can be taken apart again.
Cell CellOf(const std::optional<std::vector<std::string>>& paths, OutputFormat format) {
    if (!paths) {
        return Cell::Null();
    }
    if (format == OutputFormat::kCsv) {
        return JsonTexts(*paths);
    }
    std::string text;
    for (const std::string& path : *paths) {
        text += (text.empty() ? "" : ", ") + path;
    }
    return text;
}

void WriteJson(const std::vector<RegisteredProfile>& profiles, std::ostream& output) {
    JsonLines lines(output);
    for (const RegisteredProfile& profile : profiles) {
        lines.Next() << JsonObject()
                            .Add("organization", JsonOrNull(profile.organization))
                            .Add("name", JsonOrNull(profile.name))
                            .Add("version", JsonOrNull(profile.version))
                            .Add("path", JsonText(profile.path))
                            .Add("central_instances",
                                 profile.centralInstances ? JsonTexts(*profile.centralInstances) : "null")
                            .Text();
    }
    lines.End();
    output << '\n';
}

Listing ListingOf(const std::vector<RegisteredProfile>& profiles, OutputFormat format) {
    Listing listing({{"Organization"}, Listing::Key("Name"), Listing::Key("Version"), {"Central instances"}});
    for (const RegisteredProfile& profile : profiles) {
        listing.AddRow({CellOf(profile.organization), CellOf(profile.name), CellOf(profile.version),
                        CellOf(profile.centralInstances, format)});
    }
    return listing;
}

} // namespace

CommandDescription ProfilesCommand::Describe() {
    return {"profiles",
            "List the profiles that the server conforms to",
            {},
            {},
            {OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
            "cimhttp --host server.example profiles",
            "A central instance is the one with which a profile begins, such as the system that it is about; 'related' "
            "shows what hangs together with it."};
}

int ProfilesCommand::Run(const CommandContext& context) {
    Session session = context.Connect();
    ProfileSearch search(session);
    search.Run();
    const OutputFormat format = context.Format(*this);
    if (format == OutputFormat::kJson) {
        WriteJson(search.Profiles(), context.output);
    } else if (search.Profiles().empty() && format != OutputFormat::kCsv) {
        context.output << "no profiles\n";
    } else {
        WriteListing(ListingOf(search.Profiles(), format), format, context);
    }
    const int status = ReportRemark(search.Remark(), context);
    return std::max(status, ReportIncidents(session.TakeIncidents(), context));
}

} // namespace cimhttp
