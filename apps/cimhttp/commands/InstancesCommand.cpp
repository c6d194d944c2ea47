#include "commands/InstancesCommand.h"

#include <algorithm>
#include <ostream>
#include <string>

#include "commands/InstanceFilter.h"
#include "commands/InstanceWriter.h"
#include "connection/Session.h"
#include "host/ICIMClass.h"
#include "host/ICIMPropertyDecl.h"

namespace cimhttp {

namespace {

Instances Selected(Instances instances, const InstanceFilter& filter, const PluginAccess& access) {
    instances.erase(std::remove_if(instances.begin(), instances.end(),
                                   [&](const auto& instance) { return !filter.Accepts(*instance, access); }),
                    instances.end());
    return instances;
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
         {"--deep", "", "Include the instances of subclasses", &deep_},
         {"--raw", "", "Show values as they are, not by their value maps and units", &raw_}},
        {OutputFormat::kTable, OutputFormat::kPlain, OutputFormat::kJson, OutputFormat::kCsv, OutputFormat::kMof},
        "cimhttp --host server.example instances CIM_NetworkPort --where 'Name=eth*'"};
}

int InstancesCommand::Run(const CommandContext& context) {
    Session session = context.Connect();
    const PluginAccess& access = session.LoadedPlugin().Access();
    const auto cls = session.Class(name_);
    const InstanceFilter filter(conditions_, *cls);
    const InstanceSelection selection{properties_.empty() ? PropertiesOf(*cls) : PropertiesOf(*cls, properties_),
                                      properties_.empty(), raw_};
    const OutputFormat format = context.Format(*this);
    const Instances all = session.Instances(*cls, deep_);
    const Instances instances = Selected(all, filter, access);
    if (instances.empty() && !all.empty()) {
        context.errors << "cimhttp: no instance matches; without --where there "
                       << (all.size() == 1 ? "is 1" : "are " + std::to_string(all.size())) << '\n';
        if (format == OutputFormat::kTable || format == OutputFormat::kPlain) {
            return 0; // that was for people; programs get an empty list
        }
    }
    WriteInstances(instances, selection, format, access, context);
    return 0;
}

} // namespace cimhttp
