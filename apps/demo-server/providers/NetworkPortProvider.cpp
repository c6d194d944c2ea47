#include "providers/NetworkPortProvider.h"

#include "providers/Machine.h"

#include <charconv>

namespace demo {

namespace {

constexpr int kUnknown = 0;
constexpr int kOther = 1;
constexpr int kEnabled = 2;
constexpr int kDisabled = 3;
constexpr int kEnabledButOffline = 6;
constexpr int kEthernet = 2;
constexpr int kWireless = 11;

/// EnabledState from the state in the words of the kernel. "unknown" is what drivers without link detection say (the
/// loopback interface, tunnels), which work when they are up.
int EnabledStateOf(const std::string& operstate, bool isUp) {
    if (!isUp) {
        return kDisabled;
    }
    if (operstate == "up" || operstate == "unknown") {
        return kEnabled;
    }
    return operstate.empty() ? kUnknown : kEnabledButOffline;
}

std::optional<std::uint64_t> Hexadecimal(const std::string& text) {
    constexpr std::size_t kPrefix = 2;
    std::uint64_t number = 0;
    if (text.rfind("0x", 0) != 0 ||
        std::from_chars(text.data() + kPrefix, text.data() + text.size(), number, 16).ec != std::errc()) {
        return std::nullopt;
    }
    return number;
}

int LinkTechnologyOf(const SystemFiles& files, const std::string& folder) {
    constexpr std::uint64_t kEthernetHardware = 1;
    if (!files.List(folder + "/wireless").empty() || !files.List(folder + "/phy80211").empty()) {
        return kWireless;
    }
    const auto hardware = files.Number(folder + "/type");
    return !hardware ? kUnknown : *hardware == kEthernetHardware ? kEthernet : kOther;
}

void SetStatistics(const SystemFiles& files, const std::string& folder, Instance& instance) {
    const auto count = [&](const char* name) { return Value::Number(files.Number(folder + "/statistics/" + name)); };
    instance.values["BytesReceived"] = count("rx_bytes");
    instance.values["BytesSent"] = count("tx_bytes");
    instance.values["PacketsReceived"] = count("rx_packets");
    instance.values["PacketsSent"] = count("tx_packets");
    instance.values["ErrorsReceived"] = count("rx_errors");
}

} // namespace

void NetworkPortProvider::Enumerate(const Visitor& visit) const {
    constexpr std::uint64_t kBitsPerMegabit = 1'000'000;
    constexpr std::uint64_t kUpFlag = 1;
    for (const auto& name : files_.List("sys/class/net")) {
        const std::string folder = "sys/class/net/" + name;
        const auto flags = Hexadecimal(files_.Line(folder + "/flags").value_or(""));
        // Beside interfaces the folder can hold files, which have no flags.
        if (!flags) {
            continue;
        }
        const std::string state = files_.Line(folder + "/operstate").value_or("");
        Instance instance = MakeDevice(files_, ClassName(), name);
        auto& values = instance.values;
        values["Name"] = Value::Text(name);
        values["ElementName"] = Value::Text(name);
        values["EnabledState"] = Value::Number(EnabledStateOf(state, (*flags & kUpFlag) != 0));
        values["OperatingState"] = TextOrNull(state);
        values["InterfaceFlags"] = Value::Number(flags);
        values["HardwareType"] = Value::Number(files_.Number(folder + "/type"));
        // A port that does not know its speed says -1, or nothing.
        if (const auto megabits = files_.Number(folder + "/speed")) {
            values["Speed"] = Value::Number(*megabits * kBitsPerMegabit);
        }
        values["PermanentAddress"] = TextOrNull(files_.Line(folder + "/address").value_or(""));
        values["LinkTechnology"] = Value::Number(LinkTechnologyOf(files_, folder));
        values["ActiveMaximumTransmissionUnit"] = Value::Number(files_.Number(folder + "/mtu"));
        const std::string duplex = files_.Line(folder + "/duplex").value_or("");
        if (duplex == "full" || duplex == "half") {
            values["FullDuplex"] = Value::Boolean(duplex == "full");
        }
        SetStatistics(files_, folder, instance);
        visit(instance);
    }
}

} // namespace demo
