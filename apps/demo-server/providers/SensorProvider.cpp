#include "providers/SensorProvider.h"

#include "providers/Machine.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace demo {

namespace {

/// What the files of one kind hold; the numbers are those of the value maps of CIM_NumericSensor.
struct Kind {
    std::string_view prefix;
    int type;
    int baseUnits;
    int modifier;
};

constexpr std::array kKinds{Kind{"curr", 4, 6, -3}, Kind{"fan", 5, 19, 0}, Kind{"in", 3, 5, -3},
                            Kind{"power", 13, 7, -6}, Kind{"temp", 2, 2, -3}};
constexpr Kind kShare{"pressure", 1, 65, -2};
constexpr std::string_view kInput = "_input";

std::optional<std::int32_t> Reading(const std::string& text) {
    std::int32_t number = 0;
    const char* const end = text.data() + text.size();
    return std::from_chars(text.data(), end, number).ec == std::errc() ? std::optional(number) : std::nullopt;
}

/// `12.34` as hundredths, which the kernel writes with two places always.
std::optional<std::int32_t> Hundredths(const std::string& text) {
    const auto point = text.find('.');
    constexpr std::size_t kPlaces = 2;
    return point != std::string::npos && text.size() == point + 1 + kPlaces
               ? Reading(text.substr(0, point) + text.substr(point + 1))
               : std::nullopt;
}

/// Nothing for a file that is none of a reading.
const Kind* KindOf(const std::string& file) {
    const bool isInput =
        file.size() > kInput.size() && file.compare(file.size() - kInput.size(), kInput.size(), kInput) == 0;
    const auto* const kind =
        std::find_if(kKinds.begin(), kKinds.end(), [&](const Kind& one) { return file.rfind(one.prefix, 0) == 0; });
    return isInput && kind != kKinds.end() ? kind : nullptr;
}

Instance MakeSensor(const SystemFiles& files, std::string_view className, const Kind& kind, const std::string& id,
                    const std::string& name) {
    Instance instance = MakeDevice(files, className, id);
    auto& values = instance.values;
    values["Name"] = Value::Text(name);
    values["ElementName"] = Value::Text(name);
    SetEnabled(instance);
    values["SensorType"] = Value::Number(kind.type);
    values["BaseUnits"] = Value::Number(kind.baseUnits);
    values["UnitModifier"] = Value::Number(kind.modifier);
    values["RateUnits"] = Value::Number(0);
    return instance;
}

} // namespace

void SensorProvider::Enumerate(const Visitor& visit) const {
    EnumerateHardware(visit);
    EnumeratePressure(visit);
}

void SensorProvider::EnumerateHardware(const Visitor& visit) const {
    for (const auto& chip : files_.List("sys/class/hwmon")) {
        const std::string folder = "sys/class/hwmon/" + chip + '/';
        for (const auto& file : files_.List(folder)) {
            const Kind* const kind = KindOf(file);
            if (kind == nullptr) {
                continue;
            }
            const std::string sensor = file.substr(0, file.size() - kInput.size());
            std::string id = chip;
            id.append("/").append(sensor);
            std::string name = files_.Line(folder + "name").value_or(chip);
            name.append(" ").append(files_.Line(folder + sensor + "_label").value_or(sensor));
            Instance instance = MakeSensor(files_, ClassName(), *kind, id, name);
            const auto number = [&](const char* suffix) {
                return Value::Number(Reading(files_.Line(folder + sensor + suffix).value_or("")));
            };
            auto& values = instance.values;
            values["CurrentReading"] = number("_input");
            values["NormalMax"] = number("_max");
            values["NormalMin"] = number("_min");
            values["UpperThresholdCritical"] = number("_crit");
            values["Source"] = Value::Text(files_.Path(folder + file));
            visit(instance);
        }
    }
}

void SensorProvider::EnumeratePressure(const Visitor& visit) const {
    constexpr std::string_view kLastMinute = "avg60=";
    constexpr int kWhole = 10000; // in hundredths of a percent
    for (const std::string resource : {"cpu", "io", "memory"}) {
        const std::string file = "proc/pressure/" + resource;
        for (const auto& word : Words(files_.Line(file).value_or(""))) { // some avg10=0.00 avg60=0.00 ... (proc(5))
            const auto share =
                word.rfind(kLastMinute, 0) == 0 ? Hundredths(word.substr(kLastMinute.size())) : std::nullopt;
            if (!share) {
                continue;
            }
            Instance instance =
                MakeSensor(files_, ClassName(), kShare, "pressure/" + resource, "waiting for " + resource);
            auto& values = instance.values;
            values["OtherSensorTypeDescription"] = Value::Text("Share of the last minute");
            values["CurrentReading"] = Value::Number(*share);
            values["MinReadable"] = Value::Number(0);
            values["MaxReadable"] = Value::Number(kWhole);
            values["Source"] = Value::Text(files_.Path(file));
            visit(instance);
        }
    }
}

} // namespace demo
