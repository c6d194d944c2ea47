#include "providers/LiveProviders.h"

#include "providers/AllTypesProvider.h"
#include "providers/ComputerSystemProvider.h"
#include "providers/FileSystemProvider.h"
#include "providers/LinkProvider.h"
#include "providers/MemoryProvider.h"
#include "providers/NetworkPortProvider.h"
#include "providers/OperatingSystemProvider.h"
#include "providers/ParentProcessProvider.h"
#include "providers/ProcessProvider.h"
#include "providers/ProcessorProvider.h"
#include "providers/RunningOsProvider.h"
#include "providers/SensorProvider.h"
#include "providers/StorageVolumeProvider.h"

#include <utility>

namespace demo {

namespace {

/// Adds a provider and returns it for others to refer to; it stays where it is.
template <typename Provider, typename... Arguments>
const Provider& Add(InstanceProviders& providers, Arguments&&... arguments) {
    auto provider = std::make_unique<Provider>(std::forward<Arguments>(arguments)...);
    const Provider& added = *provider;
    providers.push_back(std::move(provider));
    return added;
}

} // namespace

InstanceProviders LiveProviders(const Schema& schema, const SystemFiles& files, std::size_t volumes) {
    InstanceProviders all;
    const auto& computer = Add<ComputerSystemProvider>(all, files);
    const auto& operatingSystem = Add<OperatingSystemProvider>(all, files);
    const auto& processors = Add<ProcessorProvider>(all, files);
    const auto& memory = Add<MemoryProvider>(all, files);
    const auto& fileSystems = Add<FileSystemProvider>(all, files);
    const auto& sensors = Add<SensorProvider>(all, files);
    const auto& ports = Add<NetworkPortProvider>(all, files);
    const auto& processes = Add<ProcessProvider>(all, files);
    const auto& storageVolumes = Add<StorageVolumeProvider>(all, files, volumes);
    Add<AllTypesProvider>(all, schema);

    Add<RunningOsProvider>(all, schema, files, computer, operatingSystem);
    Add<ParentProcessProvider>(all, schema, processes);
    Add<LinkProvider>(all, schema, "DEMO_SystemDevice", LinkEnd{"GroupComponent", {&computer}},
                      LinkEnd{"PartComponent", {&processors, &memory, &sensors, &ports, &storageVolumes}});
    Add<LinkProvider>(all, schema, "DEMO_HostedFileSystem", LinkEnd{"GroupComponent", {&computer}},
                      LinkEnd{"PartComponent", {&fileSystems}});
    Add<LinkProvider>(all, schema, "DEMO_OSProcess", LinkEnd{"GroupComponent", {&operatingSystem}},
                      LinkEnd{"PartComponent", {&processes}});
    return all;
}

} // namespace demo
