#include "InstancesCommand.h"

#include <algorithm>

#include "InstanceFilter.h"
#include "InstanceWriter.h"
#include "Session.h"
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
        "Example:\n    cimhttp --host server.example instances CIM_NetworkPort --deep --where 'Name=eth*'"};
}

int InstancesCommand::Run(const CommandContext& context) {
    Session session = context.Connect();
    const PluginAccess& access = session.LoadedPlugin().Access();
    const auto cls = session.Class(name_);
    const InstanceFilter filter(conditions_, *cls);
    const InstanceSelection selection{properties_.empty() ? PropertiesOf(*cls) : PropertiesOf(*cls, properties_),
                                      properties_.empty(), raw_};
    const Instances instances = Selected(session.Instances(*cls, deep_), filter, access);
    WriteInstances(instances, selection, context.Format(*this), access, context);
    return 0;
}

} // namespace cimhttp
