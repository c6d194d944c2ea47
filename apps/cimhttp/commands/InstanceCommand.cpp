#include "commands/InstanceCommand.h"

#include <algorithm>
#include <ostream>

#include "Options.h"
#include "commands/IncidentReport.h"
#include "commands/InstanceWriter.h"
#include "commands/ListingWriter.h"
#include "commands/WideForm.h"
#include "connection/Session.h"
#include "host/ICIMInstance.h"
#include "output/InstanceListing.h"
#include "output/Listing.h"
#include "text/TerminalText.h"

namespace cimhttp {

namespace {

using NQORVYX20::ICIMInstance;

/// Names below the list of the properties with a value.
void WriteNamesWithoutValue(const std::vector<std::string>& names, const CommandContext& context) {
    std::string text = "Without a value: ";
    const char* separator = "";
    for (const std::string& name : names) {
        text += separator + Printable(name);
        separator = ", ";
    }
    context.output << '\n';
    const std::size_t width = context.options.width == 0 ? text.size() : context.options.width;
    for (const std::string& line : Folded(text, width)) {
        context.output << line << '\n';
    }
}

/// A list of the properties that have a value, or a text for null, and the names of the others.
void WriteList(const boost::shared_ptr<ICIMInstance>& instance, InstanceSelection selection, const PluginAccess& access,
               const CommandContext& context) {
    const InstanceListing listing(access, selection.is_raw);
    const auto first_without =
        std::stable_partition(selection.properties.begin(), selection.properties.end(),
                              [&](const auto& property) { return !listing.LacksValue(*instance, *property); });
    const std::vector<std::string> without = NamesOf(Properties(first_without, selection.properties.end()));
    selection.properties.erase(first_without, selection.properties.end());
    WriteInstances({instance}, selection, OutputFormat::kPlain, access, context);
    if (!without.empty()) {
        WriteNamesWithoutValue(without, context);
    }
}

} // namespace

CommandDescription InstanceCommand::Describe() {
    return {
        "instance",
        "Show one instance",
        {{"PATH",
          R"(Its object path, such as 'CIM_Disk.Name="a",Number=3'; a namespace may stand before it, 'root/interop:')",
          true, &path_}},
        {{"--wide", "", "Write CSV with a property a column", &wide_},
         {"--raw", "", "Show values as they are, not by their value maps and units", &raw_}},
        {OutputFormat::kPlain, OutputFormat::kTable, OutputFormat::kJson, OutputFormat::kCsv, OutputFormat::kMof},
        "cimhttp --host server.example instance 'CIM_Disk.Name=\"a\",Number=3'"};
}

int InstanceCommand::Run(const CommandContext& context) {
    const OutputFormat format = FormOf(*this, wide_, context);
    Session session = context.Connect();
    const PluginAccess& access = session.LoadedPlugin().Access();
    const auto [instance, name_space] = session.Instance(path_);
    InstanceSelection selection;
    selection.properties = PropertiesOf(*instance);
    selection.is_raw = raw_;
    selection.name_space = name_space;
    selection.is_wide = wide_;
    switch (format) {
    case OutputFormat::kTable:
        WriteListing(InstanceListing(access, raw_).Values(*instance, selection.properties), format, context);
        break;
    case OutputFormat::kPlain:
        WriteList(instance, selection, access, context);
        break;
    default:
        WriteInstances({instance}, selection, format, access, context);
    }
    return ReportIncidents(session.TakeIncidents(), context);
}

} // namespace cimhttp
