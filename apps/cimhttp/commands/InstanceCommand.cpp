#include "commands/InstanceCommand.h"

#include <algorithm>
#include <ostream>

#include "Options.h"
#include "commands/InstanceWriter.h"
#include "commands/ListingWriter.h"
#include "connection/Session.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMPropertyDecl.h"
#include "output/InstanceJson.h"
#include "output/Listing.h"
#include "text/TerminalText.h"

namespace cimhttp {

namespace {

using NQORVYX20::TCIMContext;

/// The names of the properties without a value, below the list of those with one.
void WriteEmpty(const Instances& instances, const InstanceSelection& selection, const CommandContext& context) {
    std::string names;
    for (const auto& property : selection.properties) {
        if (IsEmpty(instances, *property)) {
            names += (names.empty() ? "" : ", ") + property->GetName(TCIMContext());
        }
    }
    if (!names.empty()) {
        context.output << '\n';
        const std::size_t width = context.options.width == 0 ? names.size() + 80 : context.options.width;
        for (const std::string& line : Folded("Without a value: " + Printable(names), width)) {
            context.output << line << '\n';
        }
    }
}

} // namespace

CommandDescription InstanceCommand::Describe() {
    return {"instance",
            "Show one instance",
            {{"PATH", R"(Its object path, such as 'CIM_Disk.Name="a",Number=3')", true, &path_}},
            {{"--raw", "", "Show values as they are, not by their value maps and units", &raw_}},
            {OutputFormat::kPlain, OutputFormat::kTable, OutputFormat::kJson, OutputFormat::kCsv, OutputFormat::kMof},
            "cimhttp --host server.example instance 'CIM_Disk.Name=\"a\",Number=3'"};
}

int InstanceCommand::Run(const CommandContext& context) {
    Session session = context.Connect();
    const PluginAccess& access = session.LoadedPlugin().Access();
    const Instances instances{session.Instance(path_)};
    const InstanceSelection selection{PropertiesOf(*instances.front()->GetClass(TCIMContext())), true, raw_};
    const OutputFormat format = context.Format(*this);
    if (format == OutputFormat::kTable) {
        WriteListing(InstanceListing(access, raw_).Values(*instances.front(), selection.properties), format, context);
        return 0;
    }
    WriteInstances(instances, selection, format, access, context);
    if (format == OutputFormat::kPlain) {
        WriteEmpty(instances, selection, context);
    }
    return 0;
}

} // namespace cimhttp
