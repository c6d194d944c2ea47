#include "Failure.h"
#include "commands/Commands.h"
#include "commands/ListingWriter.h"
#include "commands/Remarks.h"
#include "connection/ServerSchema.h"
#include "connection/Session.h"
#include "output/DefinitionListing.h"
#include "output/MofWriter.h"
#include "text/Names.h"

#include <algorithm>
#include <ostream>

namespace cimhttp {

namespace {

std::vector<RemoteQualifierDeclaration> InOrder(std::vector<RemoteQualifierDeclaration> declarations) {
    std::sort(declarations.begin(), declarations.end(),
              [](const auto& one, const auto& other) { return NameBefore()(one.name, other.name); });
    return declarations;
}

void WriteMof(const std::vector<RemoteQualifierDeclaration>& declarations, std::ostream& output) {
    const char* separator = "";
    for (const RemoteQualifierDeclaration& declaration : declarations) {
        output << separator << QualifierMof(declaration);
        separator = "\n";
    }
}

/// `qualifiers [--class NAME]`: the qualifiers that the server declares, or those of a class and its elements.
class QualifiersCommand : public Command {
  public:
    CommandDescription Describe() override {
        return {
            "qualifiers",
            "Show the qualifiers that the server declares, or those of a class",
            {},
            {{"--class", "NAME", "Show the qualifiers of this class and of its elements", &class_}},
            {OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv, OutputFormat::kMof},
            "cimhttp --host server.example qualifiers --class CIM_Process"};
    }

    int Run(const CommandContext& context) override {
        const OutputFormat format = context.Format(*this);
        if (!class_.empty() && format == OutputFormat::kMof) {
            throw Failure(Failure::kUsage,
                          "the MOF of a class's qualifiers is that of the class: cimhttp class " + class_);
        }
        Session session = context.Connect();
        if (!class_.empty()) {
            WriteListing(QualifierListing(ServerSchema(session).Definition(class_)), format, context);
        } else if (format == OutputFormat::kMof) {
            WriteMof(InOrder(ServerSchema(session).QualifierDeclarations()), context.output);
        } else {
            WriteListing(DeclarationListing(InOrder(ServerSchema(session).QualifierDeclarations())), format, context);
        }
        return ReportIncidents(session.TakeIncidents(), context);
    }

  private:
    std::string class_;
};

} // namespace

std::unique_ptr<Command> MakeQualifiersCommand() { return std::make_unique<QualifiersCommand>(); }

} // namespace cimhttp
