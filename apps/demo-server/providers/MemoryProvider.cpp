#include "providers/MemoryProvider.h"

#include "providers/Machine.h"

#include <unistd.h>

namespace demo {

void MemoryProvider::Enumerate(const Visitor& visit) const {
    constexpr int kReadAndWrite = 3;
    constexpr std::uint64_t kKilo = 1024;
    const auto memory = files_.Fields("proc/meminfo", ':');
    const auto kiloBytes = [&](const char* name) {
        const auto found = memory.find(name);
        return found == memory.end() ? std::nullopt : LeadingNumber(found->second);
    };

    Instance instance = MakeDevice(files_, ClassName(), "memory");
    auto& values = instance.values;
    values["Name"] = Value::Text("memory");
    values["ElementName"] = Value::Text("Memory");
    SetEnabled(instance);
    const auto blockSize = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    values["Access"] = Value::Number(kReadAndWrite);
    values["BlockSize"] = Value::Number(blockSize);
    if (const auto total = kiloBytes("MemTotal")) {
        values["NumberOfBlocks"] = Value::Number(*total * kKilo / blockSize);
    }
    if (const auto available = kiloBytes("MemAvailable")) {
        values["ConsumableBlocks"] = Value::Number(*available * kKilo / blockSize);
    }
    values["IsBasedOnUnderlyingRedundancy"] = Value::Boolean(false);
    values["Volatile"] = Value::Boolean(true);
    values["Capacity"] = KiloBytesAsBytes(kiloBytes("MemTotal"));
    values["Free"] = KiloBytesAsBytes(kiloBytes("MemFree"));
    values["Available"] = KiloBytesAsBytes(kiloBytes("MemAvailable"));
    values["Cached"] = KiloBytesAsBytes(kiloBytes("Cached"));
    values["PageTables"] = Value::Number(kiloBytes("PageTables"));
    visit(instance);
}

} // namespace demo
