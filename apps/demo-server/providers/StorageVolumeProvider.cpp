#include "providers/StorageVolumeProvider.h"

#include "providers/Machine.h"
#include "schema/DateTime.h"

#include <fmt/format.h>

#include <array>

namespace demo {

namespace {

constexpr std::string_view kIdPrefix = "volume-";
constexpr std::uint64_t kBlockSize = 512;
constexpr std::uint64_t kGigabyte = 1'073'741'824;
/// 2026-01-01 00:00 UTC.
constexpr std::time_t kFirstCreation = 1'767'225'600;
constexpr int kReadAndWrite = 3;
constexpr int kNaa = 9;
constexpr int kUnrestricted = 2;

/// What is the same in all volumes.
Instance MakeCommon(const SystemFiles& files, std::string_view className) {
    Instance instance = MakeDevice(files, className, "");
    SetEnabled(instance);
    instance.values["Purpose"] = Value::Text("Load & display tests");
    instance.values["Access"] = Value::Number(kReadAndWrite);
    instance.values["BlockSize"] = Value::Number(kBlockSize);
    instance.values["NameFormat"] = Value::Number(kNaa);
    instance.values["Usage"] = Value::Number(kUnrestricted);
    return instance;
}

void SetNumber(Instance& instance, std::uint64_t number) {
    constexpr std::array kLevels{0, 1, 5, 6, 10};
    constexpr std::uint64_t kSizes = 64;
    constexpr std::uint64_t kMinute = 60;
    auto& values = instance.values;
    const std::string name = fmt::format("{}{:07}", kIdPrefix, number);
    const std::uint64_t capacity = (number % kSizes + 1) * kGigabyte;
    const std::chrono::seconds age(number * kMinute);
    values["DeviceID"] = Value::Text(name);
    values["Name"] = Value::Text(name);
    values["ElementName"] = Value::Text(fmt::format("Volume {}", number));
    values["WorldWideName"] = Value::Text(fmt::format("60000000{:024X}", number));
    values["Capacity"] = Value::Number(capacity);
    values["NumberOfBlocks"] = Value::Number(capacity / kBlockSize);
    values["ConsumableBlocks"] = Value::Number(capacity / kBlockSize);
    values["Level"] = Value::Number(kLevels[number % kLevels.size()]);
    values["IsBasedOnUnderlyingRedundancy"] = Value::Boolean(number % kLevels.size() != 0);
    values["ThinlyProvisioned"] = Value::Boolean(number % 2 == 1);
    values["Created"] = Value::Text(Timestamp(std::chrono::system_clock::from_time_t(kFirstCreation) + age));
    values["Age"] = Value::Text(Interval(age));
    values["Throughput"] = Value::Number(number % 100'000);
    values["Latency"] = Value::Text(fmt::format("{:e}", static_cast<double>(number % 1000) / 8));
    values["Tags"] = Value::Array({"demo", fmt::format("shelf {}", number / kSizes)});
}

class VolumeCursor : public InstanceCursor {
  public:
    VolumeCursor(Instance common, std::size_t count) : instance_(std::move(common)), count_(count) {}

    const Instance* Next() override {
        if (next_ == count_) {
            return nullptr;
        }
        SetNumber(instance_, next_++);
        return &instance_;
    }

  private:
    Instance instance_;
    std::size_t next_ = 0;
    std::size_t count_;
};

} // namespace

std::unique_ptr<InstanceCursor> StorageVolumeProvider::Open() const {
    return std::make_unique<VolumeCursor>(MakeCommon(files_, ClassName()), count_);
}

void StorageVolumeProvider::Enumerate(const Visitor& visit) const {
    Instance instance = MakeCommon(files_, ClassName());
    for (std::size_t number = 0; number < count_; ++number) {
        SetNumber(instance, number);
        visit(instance);
    }
}

void StorageVolumeProvider::EnumerateCandidates(const ObjectPath& path, const Visitor& visit) const {
    const KeyBinding* const id = path.FindKey("DeviceID");
    const std::string* const text = id ? id->value.AsText() : nullptr;
    if (!text || text->rfind(kIdPrefix, 0) != 0) {
        return;
    }
    const auto number = LeadingNumber(std::string_view(*text).substr(kIdPrefix.size()));
    if (!number || *number >= count_) {
        return;
    }
    Instance instance = MakeCommon(files_, ClassName());
    SetNumber(instance, *number);
    visit(instance);
}

} // namespace demo
