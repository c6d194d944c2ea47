#include "commands/AssociationCommand.h"

#include "Failure.h"
#include "Options.h"
#include "commands/IncidentReport.h"
#include "commands/InstanceWriter.h"
#include "commands/PathWriter.h"
#include "connection/Session.h"
#include "host/ICIMInstance.h"
#include "host/TCIMReference.h"
#include "text/Names.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace cimhttp {

namespace {

using OutputFormats = std::vector<OutputFormat>;

const OutputFormats kFormats{OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv,
                             OutputFormat::kMof};

/// Those of one class stand together.
void SortByClass(Instances& instances) {
    std::stable_sort(instances.begin(), instances.end(), [](const auto& one, const auto& other) {
        const std::string className = ClassNameOf(*one);
        const std::string otherClass = ClassNameOf(*other);
        return className == otherClass ? PathOf(*one) < PathOf(*other) : NameBefore()(className, otherClass);
    });
}

/// What to show of instances of any classes: those of their properties that were asked for, or all.
InstanceSelection SelectionOf(const Instances& instances, const std::vector<std::string>& names) {
    InstanceSelection selection;
    selection.properties = PropertiesOf(instances);
    if (!names.empty() && !instances.empty()) {
        selection.properties = ChosenOfAny(selection.properties, names);
    }
    selection.isAsked = !names.empty();
    selection.isWhole = names.empty();
    selection.leavesOutEmpty = names.empty();
    selection.hasClass = true;
    return selection;
}

} // namespace

CommandArgument AssociationCommand::PathArgument() {
    return {"PATH",
            R"(The instance's object path, such as 'CIM_Disk.Name="a",Number=3'; a namespace may stand before it)",
            true, &query_.path};
}

std::vector<CommandOption> AssociationCommand::OptionsBehind(std::vector<CommandOption> own) {
    const std::vector<CommandOption> common{
        {"--names", "", "Show nothing but the paths, one a line", &names_},
        {"--property", "NAME", "Show only this property; may be given several times, or as A,B", &properties_},
        {"--raw", "", "Show values as they are, not by their value maps and units", &raw_}};
    own.insert(own.end(), common.begin(), common.end());
    return own;
}

CommandDescription AssociatorsCommand::Describe() {
    return {
        "associators",
        "Show the instances that associations of an instance lead to",
        {PathArgument()},
        OptionsBehind(
            {{"--class", "NAME", "Only over associations of this class and its subclasses", &query_.associationClass},
             {"--role", "NAME", "Only over associations whose property of this name is the instance", &query_.role},
             {"--result-class", "NAME", "Only instances of this class and its subclasses", &query_.resultClass},
             {"--result-role", "NAME", "Only instances that are this property of the association",
              &query_.resultRole}}),
        kFormats,
        "cimhttp --host server.example associators 'CIM_Disk.Name=\"a\",Number=3' --result-class CIM_System"};
}

CommandDescription ReferencesCommand::Describe() {
    return {"references",
            "Show the associations of an instance",
            {PathArgument()},
            OptionsBehind(
                {{"--class", "NAME", "Only associations of this class and its subclasses", &query_.associationClass},
                 {"--role", "NAME", "Only associations whose property of this name is the instance", &query_.role}}),
            kFormats,
            "cimhttp --host server.example references 'CIM_Disk.Name=\"a\",Number=3' --names"};
}

int AssociationCommand::Run(const CommandContext& context) {
    if (names_) {
        return WriteNames(context);
    }
    query_.properties = NamesIn(properties_);
    Session session = context.Connect();
    Instances instances = session.Related(query_);
    const IncidentTally incidents = session.TakeIncidents();
    if (instances.empty() && incidents.IsEmpty()) {
        session.CheckExists(query_.path);
    }
    SortByClass(instances);
    InstanceSelection selection = SelectionOf(instances, query_.properties);
    selection.isRaw = raw_;
    WriteInstances(instances, selection, context.Format(*this), session.LoadedPlugin().Access(), context);
    return ReportIncidents(incidents, context);
}

/// Complains about what paths have no use for.
void AssociationCommand::CheckNameOptions(const CommandContext& context) const {
    if (!properties_.empty() || raw_) {
        throw Failure(Failure::kUsage, "--names reads no values: leave out --property and --raw");
    }
    if (context.options.format == OutputFormat::kMof) {
        throw Failure(Failure::kUsage, "--names has no mof");
    }
}

int AssociationCommand::WriteNames(const CommandContext& context) {
    CheckNameOptions(context);
    Session session = context.Connect();
    const auto references = session.RelatedPaths(query_);
    if (references.empty()) {
        session.CheckExists(query_.path);
    }
    std::vector<std::string> paths;
    paths.reserve(references.size());
    std::transform(references.begin(), references.end(), std::back_inserter(paths),
                   [](const auto& reference) { return reference.GetPath(); });
    std::sort(paths.begin(), paths.end());
    WritePaths(paths, context.Format(*this), context);
    return ReportIncidents(session.TakeIncidents(), context);
}

} // namespace cimhttp
