#include "providers/Machine.h"

#include <unistd.h>

namespace demo {

std::string ComputerName(const SystemFiles& files) {
    return files.Line("proc/sys/kernel/hostname").value_or("localhost");
}

std::string OperatingSystemName(const SystemFiles& files) {
    return files.Line("proc/sys/kernel/ostype").value_or("Linux");
}

std::chrono::system_clock::time_point BootTime(const SystemFiles& files) {
    const auto fields = files.Fields("proc/stat", ' ');
    const auto seconds = fields.find("btime");
    return std::chrono::system_clock::from_time_t(
        seconds == fields.end() ? 0 : static_cast<std::time_t>(LeadingNumber(seconds->second).value_or(0)));
}

std::chrono::milliseconds ClockTicks(std::uint64_t count) {
    constexpr std::uint64_t kMilliseconds = 1000;
    static const auto kTicksPerSecond = static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK));
    return std::chrono::milliseconds(count * kMilliseconds / kTicksPerSecond);
}

Instance MakeDevice(const SystemFiles& files, std::string_view className, const std::string& deviceId) {
    Instance instance{std::string(className), {}};
    instance.values["SystemCreationClassName"] = Value::Text(kComputerSystemClass);
    instance.values["SystemName"] = Value::Text(ComputerName(files));
    instance.values["CreationClassName"] = Value::Text(instance.className);
    instance.values["DeviceID"] = Value::Text(deviceId);
    return instance;
}

void SetEnabled(Instance& instance) {
    instance.values["EnabledState"] = Value::Number(2);
    instance.values["OperationalStatus"] = Value::Array({"2"});
    instance.values["StatusDescriptions"] = Value::Array({"OK"});
    instance.values["HealthState"] = Value::Number(5);
}

Value TextOrNull(const std::string& text) { return text.empty() ? Value() : Value::Text(text); }

Value TextArray(const std::vector<std::string>& texts) { return Value::Array({texts.begin(), texts.end()}); }

} // namespace demo
