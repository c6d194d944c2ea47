#pragma once

#include "providers/SystemFiles.h"
#include "schema/Instance.h"

#include <chrono>
#include <string>

namespace demo {

// What several providers say about this machine in the same words, so that keys and references agree.

constexpr const char* kComputerSystemClass = "DEMO_ComputerSystem";
constexpr const char* kOperatingSystemClass = "DEMO_OperatingSystem";

std::string ComputerName(const SystemFiles& files);
std::string OperatingSystemName(const SystemFiles& files);

std::chrono::system_clock::time_point BootTime(const SystemFiles& files);

/// The length of a clock tick of /proc, as in the times of a process.
std::chrono::milliseconds ClockTicks(std::uint64_t count);

/// An instance of a class below CIM_LogicalDevice, with its keys.
Instance MakeDevice(const SystemFiles& files, std::string_view className, const std::string& deviceId);

/// Says that the element is fine and in use.
void SetEnabled(Instance& instance);

/// Null for an empty text.
Value TextOrNull(const std::string& text);

/// Null for nothing.
template <typename Number>
Value KiloBytesAsBytes(const std::optional<Number>& kiloBytes) {
    return kiloBytes ? Value::Number(*kiloBytes * 1024) : Value();
}

Value TextArray(const std::vector<std::string>& texts);

} // namespace demo
