#include "providers/ProcessProvider.h"

#include "providers/Machine.h"
#include "schema/DateTime.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>

namespace demo {

namespace {

/// The fields of /proc/[pid]/stat after the name (proc(5)), by their numbers there.
enum StatField : std::size_t {
    kState = 3,
    kParent = 4,
    kUserTime = 14,
    kSystemTime = 15,
    kPriority = 18,
    kThreads = 20,
    kStartTime = 22,
    kVirtualSize = 23,
    kResidentPages = 24,
};

struct Stat {
    std::string name;
    /// From field 3 on.
    std::vector<std::string> fields;

    const std::string& Field(StatField field) const { return fields[field - kState]; }
    std::uint64_t Number(StatField field) const { return LeadingNumber(Field(field)).value_or(0); }
};

/// The name stands in parentheses and can hold any character, so that the last ")" ends it.
std::optional<Stat> ReadStat(const SystemFiles& files, const std::string& folder) {
    const std::string text = files.Text(folder + "/stat");
    const auto open = text.find('(');
    const auto close = text.rfind(')');
    if (open == std::string::npos || close == std::string::npos || close < open) {
        return std::nullopt;
    }
    Stat stat{text.substr(open + 1, close - open - 1), Words(std::string_view(text).substr(close + 1))};
    if (stat.fields.size() <= kResidentPages - kState) {
        return std::nullopt;
    }
    return stat;
}

/// ExecutionState from the letter of the kernel.
int ExecutionStateOf(const std::string& letter) {
    constexpr int kOther = 1;
    static const std::map<std::string, int> kStates{{"R", 3}, {"S", 4}, {"D", 4}, {"I", 4}, {"T", 8},
                                                    {"t", 8}, {"Z", 7}, {"X", 7}, {"x", 7}};
    const auto found = kStates.find(letter);
    return found == kStates.end() ? kOther : found->second;
}

std::vector<std::string> Arguments(const SystemFiles& files, const std::string& folder) {
    const std::string text = files.Text(folder + "/cmdline");
    std::vector<std::string> arguments;
    for (std::size_t begin = 0; begin < text.size();) {
        const auto end = std::min(text.find('\0', begin), text.size());
        arguments.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return arguments;
}

/// What is the same in all processes.
Instance MakeCommon(const SystemFiles& files, std::string_view className) {
    Instance instance{std::string(className), {}};
    instance.values["CSCreationClassName"] = Value::Text(kComputerSystemClass);
    instance.values["CSName"] = Value::Text(ComputerName(files));
    instance.values["OSCreationClassName"] = Value::Text(kOperatingSystemClass);
    instance.values["OSName"] = Value::Text(OperatingSystemName(files));
    instance.values["CreationClassName"] = Value::Text(instance.className);
    SetEnabled(instance);
    return instance;
}

/// What is the same in all processes, and what the times of each of them are reckoned from.
struct Origin {
    Instance common;
    std::chrono::system_clock::time_point bootTime;
};

Origin MakeOrigin(const SystemFiles& files, std::string_view className) {
    return {MakeCommon(files, className), BootTime(files)};
}

/// The process of that number, nothing if it has ended.
std::optional<Instance> MakeProcess(const SystemFiles& files, const Origin& origin, const std::string& id) {
    static const auto kPageSize = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    const std::string folder = "proc/" + id;
    const auto stat = ReadStat(files, folder);
    if (!stat) {
        return std::nullopt;
    }
    Instance instance = origin.common;
    auto& values = instance.values;
    values["Handle"] = Value::Text(id);
    values["Name"] = Value::Text(stat->name);
    values["ElementName"] = Value::Text(stat->name);
    values["ExecutionState"] = Value::Number(ExecutionStateOf(stat->Field(kState)));
    values["ParentProcessID"] = Value::Number(stat->Number(kParent));
    // Real-time processes have a priority below zero.
    values["Priority"] = Value::Number(LeadingNumber(stat->Field(kPriority)));
    values["ThreadCount"] = Value::Number(stat->Number(kThreads));
    values["VirtualSize"] = Value::Number(stat->Number(kVirtualSize));
    values["WorkingSetSize"] = Value::Number(stat->Number(kResidentPages) * kPageSize);
    values["Arguments"] = TextArray(Arguments(files, folder));
    const auto status = files.Fields(folder + "/status", ':');
    if (const auto user = status.find("Uid"); user != status.end()) {
        values["UserID"] = Value::Number(LeadingNumber(user->second));
    }
    values["CreationDate"] = Value::Text(Timestamp(origin.bootTime + ClockTicks(stat->Number(kStartTime))));
    values["KernelModeTime"] = Value::Number(ClockTicks(stat->Number(kSystemTime)).count());
    values["UserModeTime"] = Value::Number(ClockTicks(stat->Number(kUserTime)).count());
    return instance;
}

bool IsProcessNumber(const std::string& name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
}

} // namespace

void ProcessProvider::Enumerate(const Visitor& visit) const {
    const Origin origin = MakeOrigin(files_, ClassName());
    for (const auto& id : files_.List("proc")) {
        if (IsProcessNumber(id)) {
            if (const auto process = MakeProcess(files_, origin, id)) {
                visit(*process);
            }
        }
    }
}

void ProcessProvider::EnumerateCandidates(const ObjectPath& path, const Visitor& visit) const {
    const KeyBinding* const handle = path.FindKey("Handle");
    const std::string* const id = handle ? handle->value.AsText() : nullptr;
    // A handle that is no number must not become the name of some other file.
    if (!id || !IsProcessNumber(*id)) {
        return;
    }
    if (const auto process = MakeProcess(files_, MakeOrigin(files_, ClassName()), *id)) {
        visit(*process);
    }
}

} // namespace demo
