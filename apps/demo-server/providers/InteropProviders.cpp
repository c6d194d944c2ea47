#include "providers/InteropProviders.h"

#include "providers/LinkProvider.h"
#include "providers/Machine.h"
#include "providers/StaticProvider.h"

#include <algorithm>
#include <utility>

namespace demo {

namespace {

constexpr const char* kObjectManagerClass = "DEMO_ObjectManager";
constexpr const char* kObjectManagerName = "cimhttp:demo-server";
constexpr const char* kNamespaceClass = "CIM_Namespace";
constexpr const char* kProfileClass = "CIM_RegisteredProfile";

struct Profile {
    const char* id;
    const char* name;
    const char* version;
    /// That of the instances from which a client finds all that the profile is about.
    const char* centralClass;
};

constexpr Profile kProfiles[]{
    {"cimhttp:BaseServer", "Base Server", "1.0.1", kComputerSystemClass},
    {"cimhttp:HostLANNetworkPort", "Host LAN Network Port", "1.0.2", "DEMO_NetworkPort"},
};

void SetSystem(const SystemFiles& files, Instance& instance) {
    instance.values["SystemCreationClassName"] = Value::Text(kComputerSystemClass);
    instance.values["SystemName"] = Value::Text(ComputerName(files));
    instance.values["CreationClassName"] = Value::Text(instance.className);
}

Instance ObjectManager(const SystemFiles& files) {
    constexpr const char* kBrand = "cimhttp demo-server " DEMO_SERVER_VERSION;
    Instance instance{kObjectManagerClass, {}};
    auto& values = instance.values;
    SetSystem(files, instance);
    values["Name"] = Value::Text(kObjectManagerName);
    values["ElementName"] = Value::Text("demo-server");
    values["Caption"] = Value::Text("This server");
    values["Description"] = Value::Text(kBrand);
    values["Version"] = Value::Text(kBrand);
    values["Started"] = Value::Boolean(true);
    values["GatherStatisticalData"] = Value::Boolean(false);
    SetEnabled(instance);
    return instance;
}

Instance NamespaceNamed(const std::string& name, const SystemFiles& files) {
    constexpr int kCim = 2;
    Instance instance{kNamespaceClass, {}};
    auto& values = instance.values;
    SetSystem(files, instance);
    values["ObjectManagerCreationClassName"] = Value::Text(kObjectManagerClass);
    values["ObjectManagerName"] = Value::Text(kObjectManagerName);
    values["Name"] = Value::Text(name);
    values["ElementName"] = Value::Text(name);
    values["ClassType"] = Value::Number(kCim);
    return instance;
}

Instance Registered(const Profile& profile) {
    constexpr int kDmtf = 2;
    constexpr const char* kNotAdvertised = "2";
    Instance instance{kProfileClass, {}};
    auto& values = instance.values;
    values["InstanceID"] = Value::Text(profile.id);
    values["ElementName"] = Value::Text(profile.name);
    values["RegisteredOrganization"] = Value::Number(kDmtf);
    values["RegisteredName"] = Value::Text(profile.name);
    values["RegisteredVersion"] = Value::Text(profile.version);
    values["AdvertiseTypes"] = Value::Array({kNotAdvertised});
    return instance;
}

/// The first provider of a class, of which there is one.
const InstanceProvider* ProviderOf(const InstanceProviders& providers, std::string_view className) {
    return std::find_if(providers.begin(), providers.end(),
                        [&](const auto& provider) { return SameName(provider->ClassName(), className); })
        ->get();
}

void AddProfile(InstanceProviders& providers, const Profile& profile, const Schema& schema,
                const ImplementationNamespace& implementation) {
    providers.push_back(std::make_unique<StaticProvider>(kProfileClass, std::vector<Instance>{Registered(profile)}));
    LinkEnd standard{"ConformantStandard", {providers.back().get()}};
    LinkEnd element{"ManagedElement",
                    {ProviderOf(implementation.providers, profile.centralClass)},
                    implementation.name,
                    &implementation.schema};
    providers.push_back(std::make_unique<LinkProvider>(schema, "CIM_ElementConformsToProfile", std::move(standard),
                                                       std::move(element)));
}

} // namespace

InstanceProviders InteropProviders(const Schema& schema, const ImplementationNamespace& implementation,
                                   const std::vector<std::string>& nameSpaces, const SystemFiles& files) {
    std::vector<Instance> spaces;
    spaces.reserve(nameSpaces.size());
    for (const auto& name : nameSpaces) {
        spaces.push_back(NamespaceNamed(name, files));
    }
    InstanceProviders all;
    all.push_back(std::make_unique<StaticProvider>(kObjectManagerClass, std::vector<Instance>{ObjectManager(files)}));
    all.push_back(std::make_unique<StaticProvider>(kNamespaceClass, std::move(spaces)));
    for (const Profile& profile : kProfiles) {
        AddProfile(all, profile, schema, implementation);
    }
    return all;
}

} // namespace demo
