#include "live/KnownMaximum.h"

#include "text/Names.h"

#include <array>

namespace cimhttp {

namespace {

struct Pair {
    const char* property;
    const char* maximum;
};

constexpr std::array kPairs{Pair{"AvailableSpace", "FileSystemSize"},
                            Pair{"ConsumableBlocks", "NumberOfBlocks"},
                            Pair{"CurrentClockSpeed", "MaxClockSpeed"},
                            Pair{"CurrentReading", "MaxReadable"},
                            Pair{"FreePhysicalMemory", "TotalVisibleMemorySize"},
                            Pair{"FreeSpaceInPagingFiles", "SizeStoredInPagingFiles"},
                            Pair{"FreeVirtualMemory", "TotalVirtualMemorySize"},
                            Pair{"NumberOfProcesses", "MaxNumberOfProcesses"},
                            Pair{"NumberOfUsers", "NumberOfLicensedUsers"},
                            Pair{"RemainingManagedSpace", "TotalManagedSpace"},
                            Pair{"Speed", "MaxSpeed"}};

} // namespace

std::string MaximumOf(const std::string& property) {
    for (const Pair& pair : kPairs) {
        if (IsSameName(property, pair.property)) {
            return pair.maximum;
        }
    }
    return {};
}

} // namespace cimhttp
