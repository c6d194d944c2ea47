#include "commands/ClassCommand.h"

#include "commands/IncidentReport.h"
#include "commands/ListingWriter.h"
#include "connection/Session.h"
#include "output/ClassJson.h"
#include "output/DefinitionListing.h"
#include "output/MofWriter.h"

#include <ostream>

namespace cimhttp {

CommandDescription ClassCommand::Describe() {
    return {"class",
            "Show a class as MOF",
            {{"NAME", "The class", true, &name_}},
            {{"--all", "", "Write out what the class inherits, as if it stood alone", &isWhole_}},
            {OutputFormat::kMof, OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
            "cimhttp --host server.example class CIM_FileSystem"};
}

int ClassCommand::Run(const CommandContext& context) {
    Session session = context.Connect();
    const RemoteClass cls = session.Definition(name_);
    switch (const OutputFormat format = context.Format(*this)) {
    case OutputFormat::kMof:
        context.output << ClassMof(cls, session.KnownQualifiers(), isWhole_);
        break;
    case OutputFormat::kJson:
        context.output << ClassJson(cls) << '\n';
        break;
    default:
        WriteListing(PropertyListing(cls), format, context);
    }
    return ReportIncidents(session.TakeIncidents(), context);
}

} // namespace cimhttp
