#include "text/TimeText.h"

#include <cstdio>
#include <ctime>

namespace cimhttp {

namespace {

constexpr std::size_t kMinutesFromEnd = 2; // of the zone, `+0100`

std::string Formatted(const char* format) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    char text[64];
    return {text, std::strftime(text, sizeof text, format, &local)};
}

} // namespace

std::string TimeOfDay() { return Formatted("%H:%M:%S"); }

std::string TimeWithZone() {
    std::string text = Formatted("%Y-%m-%dT%H:%M:%S%z");
    return text.insert(text.size() - kMinutesFromEnd, 1, ':');
}

std::string Milliseconds(std::chrono::microseconds time, int decimals) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", decimals, std::chrono::duration<double, std::milli>(time).count());
    return text;
}

} // namespace cimhttp
