#include "providers/LiveProviders.h"

#include "providers/AllTypesProvider.h"
#include "providers/ComputerSystemProvider.h"
#include "providers/FileSystemProvider.h"
#include "providers/MemoryProvider.h"
#include "providers/NetworkPortProvider.h"
#include "providers/OperatingSystemProvider.h"
#include "providers/ProcessProvider.h"
#include "providers/ProcessorProvider.h"
#include "providers/RunningOsProvider.h"
#include "providers/StorageVolumeProvider.h"

namespace demo {

InstanceProviders LiveProviders(const Schema& schema, const SystemFiles& files, std::size_t volumes) {
    InstanceProviders providers;
    providers.push_back(std::make_unique<ComputerSystemProvider>(files));
    providers.push_back(std::make_unique<OperatingSystemProvider>(files));
    providers.push_back(std::make_unique<ProcessorProvider>(files));
    providers.push_back(std::make_unique<MemoryProvider>(files));
    providers.push_back(std::make_unique<FileSystemProvider>(files));
    providers.push_back(std::make_unique<NetworkPortProvider>(files));
    providers.push_back(std::make_unique<ProcessProvider>(files));
    providers.push_back(std::make_unique<StorageVolumeProvider>(files, volumes));
    providers.push_back(std::make_unique<RunningOsProvider>(files));
    providers.push_back(std::make_unique<AllTypesProvider>(schema));
    return providers;
}

} // namespace demo
