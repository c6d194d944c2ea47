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

/// `methods NAME`: the methods of a class.
class MethodsCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {
            "methods",
            "Show the methods of a class",
            {{"NAME", "The class", true, &name_}},
            {},
            {OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv, OutputFormat::kMof},
            "cimhttp --host server.example methods CIM_OperatingSystem"};
    }

    int Run(const CommandContext& context) override {
        Session session = context.Connect();
        const RemoteClass cls = ServerSchema(session).Definition(name_);
        switch (const OutputFormat format = context.Format(*this)) {
        case OutputFormat::kMof:
            context.output << MethodsMof(cls, ServerSchema(session).KnownQualifiers());
            break;
        case OutputFormat::kJson:
            context.output << MethodsJson(cls) << '\n';
            break;
        case OutputFormat::kPlain:
            for (const RemoteMethod& method : cls.methods) {
                context.output << MethodSignature(method) << '\n';
            }
            break;
        default:
            if (format == OutputFormat::kTable && cls.methods.empty()) {
                context.output << "no methods\n";
            } else {
                WriteListing(MethodListing(cls), format, context, "csv"); // plain has signatures only
            }
        }
        return ReportIncidents(session.TakeIncidents(), context);
    }

  private:
    std::string name_;
};

} // namespace

std::unique_ptr<Command> MakeMethodsCommand() { return std::make_unique<MethodsCommand>(); }

} // namespace cimhttp
