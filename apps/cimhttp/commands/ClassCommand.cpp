#include "commands/Commands.h"
#include "commands/ListingWriter.h"
#include "commands/Remarks.h"
#include "connection/ServerSchema.h"
#include "connection/Session.h"
#include "output/ClassJson.h"
#include "output/DefinitionListing.h"
#include "output/MofWriter.h"

#include <ostream>

namespace cimhttp {

namespace {

/// `class NAME`: what the server says of a class, as MOF and in other forms.
class ClassCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {
            "class",
            "Show a class as MOF",
            {{"NAME", "The class", true, &name_}},
            {{"--all", "", "Write out what the class inherits, as if it stood alone", &isWhole_}},
            {OutputFormat::kMof, OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv},
            "cimhttp --host server.example class CIM_FileSystem"};
    }

    int Run(const CommandContext& context) override {
        Session session = context.Connect();
        const RemoteClass cls = ServerSchema(session).Definition(name_);
        switch (const OutputFormat format = context.Format(*this)) {
        case OutputFormat::kMof:
            context.output << ClassMof(cls, ServerSchema(session).KnownQualifiers(), isWhole_);
            break;
        case OutputFormat::kJson:
            context.output << ClassJson(cls) << '\n';
            break;
        default:
            WriteListing(PropertyListing(cls), format, context);
        }
        return ReportIncidents(session.TakeIncidents(), context);
    }

  private:
    std::string name_;
    bool isWhole_ = false; ///< in MOF, what the class inherits is written out
};

} // namespace

std::unique_ptr<Command> MakeClassCommand() { return std::make_unique<ClassCommand>(); }

} // namespace cimhttp
