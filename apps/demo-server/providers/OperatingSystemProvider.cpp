#include "providers/OperatingSystemProvider.h"

#include "providers/Machine.h"
#include "schema/DateTime.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>

namespace demo {

namespace {

constexpr int kLinux = 36;

/// A text as it stands in os-release, where it may be quoted.
std::string Unquoted(std::string text) {
    if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front()) {
        return text.substr(1, text.size() - 2);
    }
    return text;
}

std::string Field(const std::map<std::string, std::string>& fields, const std::string& name) {
    const auto found = fields.find(name);
    return found == fields.end() ? "" : found->second;
}

std::uint64_t CountProcesses(const SystemFiles& files) {
    const auto names = files.List("proc");
    const auto isNumber = [](const std::string& name) {
        return std::all_of(name.begin(), name.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
    };
    return static_cast<std::uint64_t>(std::count_if(names.begin(), names.end(), isNumber));
}

void SetMemory(const SystemFiles& files, Instance& instance) {
    const auto memory = files.Fields("proc/meminfo", ':');
    const auto kiloBytes = [&](const char* name) { return LeadingNumber(Field(memory, name)); };
    const auto total = kiloBytes("MemTotal");
    const auto free = kiloBytes("MemFree");
    const auto swap = kiloBytes("SwapTotal");
    const auto freeSwap = kiloBytes("SwapFree");
    instance.values["TotalVisibleMemorySize"] = Value::Number(total);
    instance.values["FreePhysicalMemory"] = Value::Number(free);
    if (swap.value_or(0) != 0) {
        instance.values["TotalSwapSpaceSize"] = Value::Number(swap);
    }
    if (total) {
        instance.values["TotalVirtualMemorySize"] = Value::Number(*total + swap.value_or(0));
    }
    if (free) {
        instance.values["FreeVirtualMemory"] = Value::Number(*free + freeSwap.value_or(0));
    }
}

} // namespace

void OperatingSystemProvider::Enumerate(const Visitor& visit) const {
    Instance instance{kOperatingSystemClass, {}};
    auto& values = instance.values;
    const auto now = std::chrono::system_clock::now();
    const auto release = files_.Fields("etc/os-release", '=');
    const std::string name = OperatingSystemName(files_);
    values["CSCreationClassName"] = Value::Text(kComputerSystemClass);
    values["CSName"] = Value::Text(ComputerName(files_));
    values["CreationClassName"] = Value::Text(kOperatingSystemClass);
    values["Name"] = Value::Text(name);
    values["ElementName"] = Value::Text(name);
    values["Caption"] = Value::Text("The operating system of this computer");
    SetEnabled(instance);
    values["OSType"] = Value::Number(kLinux);
    values["Distribution"] = TextOrNull(Unquoted(Field(release, "PRETTY_NAME")));
    values["Version"] = TextOrNull(files_.Line("proc/sys/kernel/osrelease").value_or(""));
    values["KernelVersion"] = TextOrNull(files_.Line("proc/sys/kernel/version").value_or(""));
    values["LastBootUpTime"] = Value::Text(Timestamp(BootTime(files_)));
    values["LocalDateTime"] = Value::Text(Timestamp(now));
    values["CurrentTimeZone"] = Value::Number(MinutesAheadOfUtc(now));
    values["SystemUpTime"] = Value::Number(files_.Number("proc/uptime"));
    values["NumberOfProcesses"] = Value::Number(CountProcesses(files_));
    values["MaxNumberOfProcesses"] = Value::Number(files_.Number("proc/sys/kernel/pid_max"));
    values["TaintFlags"] = Value::Number(files_.Number("proc/sys/kernel/tainted"));
    values["PageSize"] = Value::Number(::sysconf(_SC_PAGESIZE));
    auto averages = Words(files_.Line("proc/loadavg").value_or(""));
    averages.resize(std::min<std::size_t>(averages.size(), 3));
    values["LoadAverages"] = TextArray(averages);
    SetMemory(files_, instance);
    visit(instance);
}

} // namespace demo
