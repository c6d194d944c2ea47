#include "commands/InstancesCommand.h"

#include <algorithm>
#include <ostream>
#include <string>

#include "FailureLog.h"
#include "commands/InstanceReader.h"
#include "commands/InstanceWriter.h"
#include "connection/Session.h"
#include "host/ICIMClass.h"
#include "host/ICIMPropertyDecl.h"

namespace cimhttp {

namespace {

/// Whether instances of subclasses lack properties because the class that was asked for does not have them. That is no
/// error; `errors_before` is how many others there were.
bool LacksWhatSubclassesAdd(const NQORVYX20::ICIMClass& cls, std::size_t errors_before, FailureLog& log) {
    const auto lost = log.TakeLostProperties();
    const auto added = std::count_if(lost.begin(), lost.end(), [&](const std::string& name) {
        return !cls.GetPropertyDecl(name, NQORVYX20::TCIMContext());
    });
    if (added > 0 && static_cast<std::size_t>(added) == lost.size()) {
        log.ResetErrorCount(errors_before);
    }
    return added > 0;
}

} // namespace

CommandDescription InstancesCommand::Describe() {
    return {
        "instances",
        "Show the instances of a class",
        {{"NAME", "The class", true, &name_}},
        {{"--property", "NAME", "Show only this property; may be given several times", &properties_},
         {"--where", "PROPERTY=VALUE",
          "Show only instances with this value, as it is or as it is shown; it may be a pattern such as 'eth*', and "
          "case does not matter; may be given several times",
          &conditions_},
         {"--deep", "", "Include the instances of subclasses, also from a server that leaves them out otherwise",
          &deep_},
         {"--raw", "", "Show values as they are, not by their value maps and units", &raw_}},
        {OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv, OutputFormat::kMof},
        "cimhttp --host server.example instances CIM_NetworkPort --where 'Name=eth*'"};
}

int InstancesCommand::Run(const CommandContext& context) {
    Session session = context.Connect();
    const PluginAccess& access = session.LoadedPlugin().Access();
    const InstanceQuery query(properties_, conditions_);
    InstanceReader reader(session, name_, query, deep_);
    const OutputFormat format = context.Format(*this);
    const std::size_t errors_before = context.log.ErrorCount();
    const auto [properties, instances, count] = reader.Read();
    const bool lacks_some = deep_ && LacksWhatSubclassesAdd(reader.Class(), errors_before, context.log);
    if (instances.empty() && count > 0) {
        context.errors << "cimhttp: no instance matches; without --where there "
                       << (count == 1 ? "is 1" : "are " + std::to_string(count)) << '\n';
        if (format == OutputFormat::kTable || format == OutputFormat::kPlain) {
            return 0; // that was for people; programs get an empty list
        }
    }
    WriteInstances(instances, {properties, query.NamesProperties(), !query.NamesProperties(), false, raw_}, format,
                   access, context);
    if (lacks_some && !query.NamesProperties()) {
        context.output.flush(); // on a terminal, the remark stands below
        context.errors << "cimhttp: what subclasses add to " << reader.ClassName()
                       << " is left out; 'instances' with the name of the subclass shows it\n";
    }
    return 0;
}

} // namespace cimhttp
