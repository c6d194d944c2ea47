#include "commands/Commands.h"
#include "commands/ListingWriter.h"
#include "commands/Remarks.h"
#include "connection/Session.h"
#include "interop/ProfileSearch.h"
#include "output/Json.h"
#include "output/Listing.h"
#include "text/WordList.h"

#include <algorithm>
#include <ostream>

namespace cimhttp {

namespace {

std::string JsonOrNull(const std::optional<std::string>& text) { return text ? JsonText(*text) : "null"; }

/// Lists of paths are JSON in CSV, so that they can be taken apart again.
Cell CellOf(const std::optional<std::vector<std::string>>& paths, OutputFormat format) {
    if (!paths) {
        return Cell::Null();
    }
    return format == OutputFormat::kCsv ? JsonTexts(*paths) : Joined(*paths);
}

std::string ProfileJson(const RegisteredProfile& profile) {
    return JsonObject()
        .Add("organization", JsonOrNull(profile.organization))
        .Add("name", JsonOrNull(profile.name))
        .Add("version", JsonOrNull(profile.version))
        .Add("path", JsonText(profile.path))
        .Add("central_instances", profile.centralInstances ? JsonTexts(*profile.centralInstances) : "null")
        .Text();
}

Listing ListingOf(const std::vector<RegisteredProfile>& profiles, OutputFormat format) {
    Listing listing({{"Organization"}, Listing::Key("Name"), Listing::Key("Version"), {"Central instances"}});
    for (const RegisteredProfile& profile : profiles) {
        listing.AddRow({profile.organization, profile.name, profile.version, CellOf(profile.centralInstances, format)});
    }
    return listing;
}

/// `profiles`: the profiles that the server says it conforms to, with their central instances.
class ProfilesCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {
            "profiles",
            "List the profiles that the server conforms to",
            {},
            {},
            {OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
            "cimhttp --host server.example profiles",
            "A central instance is the one with which a profile begins, such as the system that it is about; 'related' "
            "shows what is associated with it."};
    }

    int Run(const CommandContext& context) override {
        Session session = context.Connect();
        ProfileSearch search(session);
        search.Run();
        const OutputFormat format = context.Format(*this);
        if (format == OutputFormat::kJson) {
            WriteJsonLines(search.Profiles(), ProfileJson, context.output);
            context.output << '\n';
        } else if (search.Profiles().empty() && format != OutputFormat::kCsv) {
            context.output << "no profiles\n";
        } else {
            WriteListing(ListingOf(search.Profiles(), format), format, context);
        }
        const int status = ReportRemark(search.Remark(), context);
        return std::max(status, ReportIncidents(session.TakeIncidents(), context));
    }
};

} // namespace

std::unique_ptr<Command> MakeProfilesCommand() { return std::make_unique<ProfilesCommand>(); }

} // namespace cimhttp
