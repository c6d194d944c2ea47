#include "commands/InstanceWriter.h"

#include <strings.h>

#include <algorithm>
#include <ostream>

#include "commands/Command.h"
#include "commands/ListingWriter.h"
#include "host/ICIMPropertyDecl.h"
#include "output/InstanceJson.h"
#include "output/MofWriter.h"

namespace cimhttp {

namespace {

using NQORVYX20::TCIMContext;
using Properties = std::vector<boost::shared_ptr<NQORVYX20::ICIMPropertyDecl>>;

Properties InOrder(Properties properties) {
    std::sort(properties.begin(), properties.end(), [](const auto& one, const auto& other) {
        return ::strcasecmp(one->GetName(TCIMContext()).c_str(), other->GetName(TCIMContext()).c_str()) < 0;
    });
    return properties;
}

Properties WithoutEmpty(const Properties& properties, const Instances& instances) {
    Properties left;
    std::copy_if(properties.begin(), properties.end(), std::back_inserter(left),
                 [&](const auto& property) { return !IsEmpty(instances, *property); });
    return left;
}

void WriteJson(const Instances& instances, const Properties& properties, const PluginAccess& access,
               std::ostream& output) {
    output << '[';
    const InstanceJson instance_json(properties, access);
    std::string json;
    const char* separator = "\n";
    for (const auto& instance : instances) {
        json.clear();
        instance_json.Append(*instance, json);
        output << separator << json;
        separator = ",\n";
    }
    output << "\n]\n";
}

void WriteMof(const Instances& instances, const Properties& properties, std::ostream& output) {
    const char* separator = "";
    for (const auto& instance : instances) {
        output << separator << InstanceMof(*instance, properties);
        separator = "\n";
    }
}

} // namespace

void WriteInstances(const Instances& instances, const InstanceSelection& selection, OutputFormat format,
                    const PluginAccess& access, const CommandContext& context) {
    const InstanceListing listing(access, selection.is_raw);
    switch (format) {
    case OutputFormat::kJson:
        WriteJson(instances, InOrder(selection.properties), access, context.output);
        return;
    case OutputFormat::kCsv:
        WriteListing(InstanceListing(access, false).Values(instances, InOrder(selection.properties)), format, context);
        return;
    case OutputFormat::kMof:
        WriteMof(instances, selection.properties, context.output);
        return;
    default:
        break;
    }
    if (instances.empty()) {
        context.output << "no instances\n";
        return;
    }
    const Properties shown =
        selection.leaves_out_empty ? WithoutEmpty(selection.properties, instances) : selection.properties;
    WriteListing(listing.Table(instances, shown), format, context);
}

} // namespace cimhttp
