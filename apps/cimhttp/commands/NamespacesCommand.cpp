#include "commands/Commands.h"
#include "commands/ListingWriter.h"
#include "commands/Remarks.h"
#include "connection/Session.h"
#include "interop/NamespaceSearch.h"
#include "output/Json.h"

#include <algorithm>
#include <ostream>

namespace cimhttp {

namespace {

std::vector<std::string> NamesOf(const NamespaceSearch& search) {
    return {search.Names().begin(), search.Names().end()};
}

void WriteJson(const NamespaceSearch& search, std::ostream& output) {
    const std::string source = JsonObject()
                                   .Add("class", JsonText(search.SourceClass()))
                                   .Add("namespace", JsonText(search.SourceNamespace()))
                                   .Text();
    output << JsonObject().Add("namespaces", JsonTexts(NamesOf(search))).Add("source", source).Text() << '\n';
}

/// `namespaces`: the namespaces of the server.
class NamespacesCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {"namespaces",
                "List the server's namespaces",
                {},
                {},
                {OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
                "cimhttp --host server.example namespaces"};
    }

    int Run(const CommandContext& context) override {
        Session session = context.Connect();
        NamespaceSearch search(session);
        search.Run();
        const OutputFormat format = context.Format(*this);
        if (format == OutputFormat::kJson) {
            WriteJson(search, context.output);
        } else {
            WriteTexts("Name", NamesOf(search), format, context);
        }
        const int status = ReportRemark(search.Remark(), context);
        return std::max(status, ReportIncidents(session.TakeIncidents(), context));
    }
};

} // namespace

std::unique_ptr<Command> MakeNamespacesCommand() { return std::make_unique<NamespacesCommand>(); }

} // namespace cimhttp
