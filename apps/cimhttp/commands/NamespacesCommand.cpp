#include "commands/NamespacesCommand.h"

#include "Options.h"
#include "commands/IncidentReport.h"
#include "commands/ListingWriter.h"
#include "commands/Remark.h"
#include "connection/NamespaceSearch.h"
#include "connection/Session.h"
#include "output/Json.h"
#include "output/Listing.h"
#include "text/TerminalText.h"

#include <algorithm>
#include <ostream>

namespace cimhttp {

namespace {

void WriteJson(const NamespaceSearch& search, std::ostream& output) {
    const std::string source = JsonObject()
                                   .Add("class", JsonText(search.SourceClass()))
                                   .Add("namespace", JsonText(search.SourceNamespace()))
                                   .Text();
    const std::vector<std::string> names(search.Names().begin(), search.Names().end());
    output << JsonObject().Add("namespaces", JsonTexts(names)).Add("source", source).Text() << '\n';
}

void WriteCsv(const NamespaceSearch& search, const CommandContext& context) {
    Listing listing({{"Name"}});
    for (const std::string& name : search.Names()) {
        listing.AddRow({name});
    }
    WriteListing(listing, OutputFormat::kCsv, context);
}

} // namespace

CommandDescription NamespacesCommand::Describe() {
    return {"namespaces",
            "List the server's namespaces",
            {},
            {},
            {OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
            "cimhttp --host server.example namespaces"};
}

int NamespacesCommand::Run(const CommandContext& context) {
    Session session = context.Connect();
    NamespaceSearch search(session);
    search.Run();
    switch (context.Format(*this)) {
    case OutputFormat::kJson:
        WriteJson(search, context.output);
        break;
    case OutputFormat::kCsv:
        WriteCsv(search, context);
        break;
    default:
        for (const std::string& name : search.Names()) {
            context.output << Printable(name) << '\n';
        }
    }
    const int status = ReportRemark(search.Remark(), context);
    return std::max(status, ReportIncidents(session.TakeIncidents(), context));
}

} // namespace cimhttp
