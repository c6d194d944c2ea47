#include "Failure.h"
#include "Options.h"
#include "access/AssociationQuery.h"
#include "commands/Commands.h"
#include "commands/InstanceWriter.h"
#include "commands/ListingWriter.h"
#include "commands/Remarks.h"
#include "connection/ServerAssociations.h"
#include "connection/ServerInstances.h"
#include "connection/Session.h"
#include "host/ICIMInstance.h"
#include "host/TCIMReference.h"
#include "output/KeyListing.h"
#include "text/Names.h"

#include <algorithm>

namespace cimhttp {

namespace {

using OutputFormats = std::vector<OutputFormat>;

const OutputFormats kFormats{OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv,
                             OutputFormat::kMof};

/// Puts instances of one class side by side.
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

/// What `associators` and `references` have in common: they ask for what associations lead to, or for the associations
/// themselves, and show instances or paths.
class AssociationCommand : public Command {
  public:
    int Run(const CommandContext& context) override {
        if (names_) {
            return WriteNames(context);
        }
        AssociationQuery query = query_;
        query.properties = NamesIn(properties_);
        Session session = context.Connect();
        Instances instances = ServerAssociations(session).Related(query);
        const IncidentTally incidents = session.TakeIncidents();
        if (instances.empty() && incidents.IsEmpty()) {
            ServerInstances(session).CheckExists(query.path);
        }
        SortByClass(instances);
        InstanceSelection selection = SelectionOf(instances, query.properties);
        selection.isRaw = raw_;
        WriteInstances(instances, selection, context.Format(*this), session.Access(), context);
        return ReportIncidents(incidents, context);
    }

  protected:
    explicit AssociationCommand(AssociationQuery::Wanted wanted) { query_.wanted = wanted; }

    CommandArgument PathArgument() {
        return {"PATH",
                R"(The instance's object path, such as 'CIM_Disk.Name="a",Number=3'; a namespace may precede it)", true,
                &query_.path};
    }

    /// The own options of a command, and after them those that both commands have.
    std::vector<CommandOption> WithCommonOptions(std::vector<CommandOption> own) {
        const std::vector<CommandOption> common{
            {"--names", "", "Show nothing but the paths, one a line", &names_},
            {"--property", "NAME", "Show only this property; may be given several times, or as A,B", &properties_},
            {"--raw", "", "Show values as they are, not by their value maps and units", &raw_}};
        own.insert(own.end(), common.begin(), common.end());
        return own;
    }

    AssociationQuery query_; ///< what the command line says

  private:
    /// Refuses options that have no effect on paths.
    void CheckNameOptions(const CommandContext& context) const {
        if (!properties_.empty() || raw_) {
            throw Failure(Failure::kUsage, "--names reads no values: leave out --property and --raw");
        }
        if (context.options.format == OutputFormat::kMof) {
            throw Failure(Failure::kUsage, "--names has no mof");
        }
    }

    int WriteNames(const CommandContext& context) {
        CheckNameOptions(context);
        Session session = context.Connect();
        const auto references = ServerAssociations(session).RelatedPaths(query_);
        if (references.empty()) {
            ServerInstances(session).CheckExists(query_.path);
        }
        std::vector<std::string> paths = PathTexts(references);
        std::sort(paths.begin(), paths.end());
        WriteTexts("Path", paths, context.Format(*this), context);
        return ReportIncidents(session.TakeIncidents(), context);
    }

    std::vector<std::string> properties_; ///< names, or lists of them
    bool names_ = false;                  ///< the paths alone
    bool raw_ = false;                    ///< values as they are, not as people read them
};

/// `associators PATH`: the instances at the other ends of an instance's associations.
class AssociatorsCommand : public AssociationCommand {
  public:
    AssociatorsCommand() : AssociationCommand(AssociationQuery::Wanted::kOtherEnds) {}

    CommandDescription Describe() override {
        return {"associators",
                "Show the instances that are associated with an instance",
                {PathArgument()},
                WithCommonOptions(
                    {{"--class", "NAME", "Only over associations of this class and its subclasses",
                      &query_.associationClass},
                     {"--role", "NAME", "Only over associations in which this property refers to the instance",
                      &query_.role},
                     {"--result-class", "NAME", "Only instances of this class and its subclasses", &query_.resultClass},
                     {"--result-role", "NAME", "Only instances to which this property of the association refers",
                      &query_.resultRole}}),
                kFormats,
                "cimhttp --host server.example associators 'CIM_Disk.Name=\"a\",Number=3' --result-class CIM_System"};
    }
};

/// `references PATH`: the associations of an instance.
class ReferencesCommand : public AssociationCommand {
  public:
    ReferencesCommand() : AssociationCommand(AssociationQuery::Wanted::kAssociations) {}

    CommandDescription Describe() override {
        return {
            "references",
            "Show the associations of an instance",
            {PathArgument()},
            WithCommonOptions(
                {{"--class", "NAME", "Only associations of this class and its subclasses", &query_.associationClass},
                 {"--role", "NAME", "Only associations in which this property refers to the instance", &query_.role}}),
            kFormats,
            "cimhttp --host server.example references 'CIM_Disk.Name=\"a\",Number=3' --names"};
    }
};

} // namespace

std::unique_ptr<Command> MakeAssociatorsCommand() { return std::make_unique<AssociatorsCommand>(); }

std::unique_ptr<Command> MakeReferencesCommand() { return std::make_unique<ReferencesCommand>(); }

} // namespace cimhttp
