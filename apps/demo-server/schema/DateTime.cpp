#include "schema/DateTime.h"

#include <fmt/format.h>

#include <cstdlib>
#include <ctime>

namespace demo {

namespace {

constexpr int kSecondsPerMinute = 60;
constexpr int kFirstYear = 1900;

std::tm LocalTime(std::chrono::system_clock::time_point time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm fields{};
    localtime_r(&seconds, &fields);
    return fields;
}

} // namespace

std::string Timestamp(std::chrono::system_clock::time_point time) {
    using std::chrono::microseconds;
    const auto whole = std::chrono::floor<std::chrono::seconds>(time);
    const auto fraction = std::chrono::duration_cast<microseconds>(time - whole).count();
    const std::tm fields = LocalTime(whole);
    const int offset = MinutesAheadOfUtc(time);
    return fmt::format("{:04}{:02}{:02}{:02}{:02}{:02}.{:06}{}{:03}", fields.tm_year + kFirstYear, fields.tm_mon + 1,
                       fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec, fraction, offset < 0 ? '-' : '+',
                       std::abs(offset));
}

std::string Interval(std::chrono::microseconds length) {
    using namespace std::chrono;
    using Days = duration<std::int64_t, std::ratio<24L * 60 * 60>>;
    const auto days = duration_cast<Days>(length);
    length -= days;
    const auto inHours = duration_cast<hours>(length);
    length -= inHours;
    const auto inMinutes = duration_cast<minutes>(length);
    length -= inMinutes;
    const auto inSeconds = duration_cast<seconds>(length);
    length -= inSeconds;
    return fmt::format("{:08}{:02}{:02}{:02}.{:06}:000", days.count(), inHours.count(), inMinutes.count(),
                       inSeconds.count(), length.count());
}

int MinutesAheadOfUtc(std::chrono::system_clock::time_point time) {
    return static_cast<int>(LocalTime(time).tm_gmtoff) / kSecondsPerMinute;
}

} // namespace demo
