#include "providers/ProcessorProvider.h"

#include "providers/Machine.h"

#include <algorithm>
#include <set>

namespace demo {

namespace {

constexpr int kOtherFamily = 1;
constexpr int kUnknownFamily = 2;
constexpr int kZenFamily = 107;
constexpr int kXeonFamily = 179;
constexpr int kEnabledStatus = 1;
constexpr int kFullPower = 3;

using Fields = std::map<std::string, std::string>;

struct Package {
    /// What /proc/cpuinfo says about its first instruction stream.
    Fields fields;
    /// The numbers of its instruction streams.
    std::vector<std::string> streams;
    std::set<std::string> cores;

    std::string Field(const char* name) const {
        const auto found = fields.find(name);
        return found == fields.end() ? "" : found->second;
    }
};

/// The paragraphs of /proc/cpuinfo that describe an instruction stream.
std::vector<Fields> ReadStreams(const SystemFiles& files) {
    std::vector<Fields> streams;
    for (const auto& line : files.Lines("proc/cpuinfo")) {
        const auto colon = line.find(':');
        if (colon == std::string::npos) {
            continue;
        }
        const std::string name = line.substr(0, line.find_last_not_of(" \t", colon - (colon == 0 ? 0 : 1)) + 1);
        const auto value = line.find_first_not_of(" \t", colon + 1);
        if (name == "processor") {
            streams.emplace_back();
        }
        if (!streams.empty()) {
            streams.back().emplace(name, value == std::string::npos ? "" : line.substr(value));
        }
    }
    return streams;
}

std::map<std::string, Package> ReadPackages(const SystemFiles& files) {
    std::map<std::string, Package> packages;
    for (const auto& fields : ReadStreams(files)) {
        const auto id = fields.find("physical id");
        Package& package = packages[id == fields.end() ? "0" : id->second];
        if (package.streams.empty()) {
            package.fields = fields;
        }
        package.streams.push_back(fields.at("processor"));
        const auto core = fields.find("core id");
        package.cores.insert(core == fields.end() ? fields.at("processor") : core->second);
    }
    return packages;
}

int FamilyOf(const std::string& model) {
    const auto names = [&](const char* word) { return model.find(word) != std::string::npos; };
    if (names("EPYC") || names("Ryzen")) {
        return kZenFamily;
    }
    if (names("Xeon")) {
        return kXeonFamily;
    }
    return model.empty() ? kUnknownFamily : kOtherFamily;
}

Value Signature(const Package& package) {
    const auto family = LeadingNumber(package.Field("cpu family"));
    const auto model = LeadingNumber(package.Field("model"));
    const auto stepping = LeadingNumber(package.Field("stepping"));
    if (!family || !model || !stepping) {
        return {};
    }
    return Value::Number((*family & 0xFFU) << 16U | (*model & 0xFFU) << 8U | (*stepping & 0xFFU));
}

/// sysfs knows the clock in kHz, where the clock can be set.
std::optional<std::uint64_t> Megahertz(const SystemFiles& files, const std::string& stream, const char* file) {
    constexpr std::uint64_t kKilo = 1000;
    const auto kilohertz = files.Number("sys/devices/system/cpu/cpu" + stream + "/cpufreq/" + file);
    return kilohertz ? std::optional(*kilohertz / kKilo) : std::nullopt;
}

} // namespace

void ProcessorProvider::Enumerate(const Visitor& visit) const {
    for (const auto& [id, package] : ReadPackages(files_)) {
        Instance instance = MakeDevice(files_, ClassName(), "cpu" + id);
        auto& values = instance.values;
        const std::string model = package.Field("model name");
        values["Name"] = Value::Text(model.empty() ? "processor " + id : model);
        values["ElementName"] = values["Name"];
        values["Role"] = Value::Text("Central Processor");
        SetEnabled(instance);
        values["Availability"] = Value::Number(kFullPower);
        values["CPUStatus"] = Value::Number(kEnabledStatus);
        values["Model"] = TextOrNull(model);
        values["Family"] = Value::Number(FamilyOf(model));
        values["Stepping"] = TextOrNull(package.Field("stepping"));
        values["Signature"] = Signature(package);
        const auto maximum = Megahertz(files_, package.streams.front(), "cpuinfo_max_freq");
        const auto current = LeadingNumber(package.Field("cpu MHz"));
        values["MaxClockSpeed"] = Value::Number(maximum);
        values["CurrentClockSpeed"] =
            Value::Number(current ? current : Megahertz(files_, package.streams.front(), "scaling_cur_freq"));
        values["NumberOfEnabledCores"] = Value::Number(package.cores.size());
        values["NumberOfThreads"] = Value::Number(package.streams.size());
        values["CacheSize"] = Value::Number(LeadingNumber(package.Field("cache size")));
        // The ARM kernels call them by another name.
        const std::string flags = package.Field("flags");
        values["Features"] = TextArray(Words(flags.empty() ? package.Field("Features") : flags));

        const Times times = ReadTimes(package.streams);
        values["UserTime"] = Value::Number(ClockTicks(times.user).count());
        values["SystemTime"] = Value::Number(ClockTicks(times.system).count());
        values["IdleTime"] = Value::Number(ClockTicks(times.idle).count());
        values["LoadPercentage"] = Value::Number(LoadPercentage(id, times));
        visit(instance);
    }
}

ProcessorProvider::Times ProcessorProvider::ReadTimes(const std::vector<std::string>& streams) const {
    // cpuN user nice system idle iowait irq softirq ... (proc(5))
    const auto fields = files_.Fields("proc/stat", ' ');
    Times times;
    for (const auto& stream : streams) {
        const auto line = fields.find("cpu" + stream);
        if (line == fields.end()) {
            continue;
        }
        std::vector<std::uint64_t> ticks;
        for (const auto& word : Words(line->second)) {
            ticks.push_back(LeadingNumber(word).value_or(0));
        }
        ticks.resize(std::max<std::size_t>(ticks.size(), 7));
        times.user += ticks[0] + ticks[1];
        times.system += ticks[2] + ticks[5] + ticks[6];
        times.idle += ticks[3] + ticks[4];
    }
    return times;
}

std::uint64_t ProcessorProvider::LoadPercentage(const std::string& package, const Times& now) const {
    constexpr std::uint64_t kWhole = 100;
    const std::lock_guard<std::mutex> lock(mutex_);
    Times& before = timesBefore_[package];
    // The idle time can step back a little when a processor is switched off and on.
    const auto since = [](std::uint64_t later, std::uint64_t earlier) { return later > earlier ? later - earlier : 0; };
    const std::uint64_t busy = since(now.user + now.system, before.user + before.system);
    const std::uint64_t all = busy + since(now.idle, before.idle);
    before = now;
    return all == 0 ? 0 : busy * kWhole / all;
}

} // namespace demo
