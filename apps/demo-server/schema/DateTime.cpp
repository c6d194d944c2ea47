#include "schema/DateTime.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <system_error>

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

/// A run of digits, and the numbers that it may be.
struct Field {
    std::size_t begin;
    std::size_t length;
    int least;
    int most;
};

constexpr std::size_t kDatetimeLength = 25;
constexpr std::size_t kPoint = 14;
constexpr std::size_t kSign = 21;
constexpr Field kMicroseconds{15, 6, 0, 999999};
constexpr std::array<Field, 7> kMoment{
    {{0, 4, 0, 9999}, {4, 2, 1, 12}, {6, 2, 1, 31}, {8, 2, 0, 23}, {10, 2, 0, 59}, {12, 2, 0, 59}, kMicroseconds}};
constexpr std::array<Field, 5> kLength{
    {{0, 8, 0, 99999999}, {8, 2, 0, 23}, {10, 2, 0, 59}, {12, 2, 0, 59}, kMicroseconds}};
constexpr Field kOffset{22, 3, 0, 999};

/// The number in a field; nothing when it is none.
std::optional<int> NumberIn(std::string_view text, const Field& field) {
    const char* const begin = text.data() + field.begin;
    int number = 0;
    const auto [end, error] = std::from_chars(begin, begin + field.length, number);
    const bool isWhole = error == std::errc() && end == begin + field.length && *begin != '-';
    return isWhole ? std::optional<int>(number) : std::nullopt;
}

/// Whether a field is digits, of the microseconds perhaps the first ones only, and then asterisks.
bool IsPartlyUnknown(std::string_view text, const Field& field) {
    const std::string_view part = text.substr(field.begin, field.length);
    const std::size_t known = part.find('*');
    return known != std::string_view::npos && part.find_first_not_of('*', known) == std::string_view::npos &&
           (known == 0 || field.begin == kMicroseconds.begin) &&
           part.substr(0, known).find_first_not_of("0123456789") == std::string_view::npos;
}

template <std::size_t count>
bool AreGood(std::string_view text, const std::array<Field, count>& fields) {
    bool isUnknown = false; // from here on
    for (const Field& field : fields) {
        const auto number = isUnknown ? std::nullopt : NumberIn(text, field);
        if (number && (*number < field.least || *number > field.most)) {
            return false;
        }
        if (!number && (!IsPartlyUnknown(text, field) || (isUnknown && text[field.begin] != '*'))) {
            return false;
        }
        isUnknown = !number;
    }
    return true;
}

/// Whether the month has the day, as far as both are known.
bool HasDay(std::string_view text) {
    constexpr std::array<int, 12> kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const auto year = NumberIn(text, kMoment[0]);
    const auto month = NumberIn(text, kMoment[1]);
    const auto day = NumberIn(text, kMoment[2]);
    if (!year || !month || !day) {
        return true;
    }
    const bool isLeapYear = *year % 4 == 0 && (*year % 100 != 0 || *year % 400 == 0);
    return *day <= kDays[static_cast<std::size_t>(*month - 1)] + (*month == 2 && isLeapYear ? 1 : 0);
}

} // namespace

bool IsDatetime(std::string_view text) {
    if (text.size() != kDatetimeLength || text[kPoint] != '.') {
        return false;
    }
    const auto offset = NumberIn(text, kOffset);
    if (text[kSign] == ':') {
        return offset == 0 && AreGood(text, kLength);
    }
    return (text[kSign] == '+' || text[kSign] == '-') && offset && AreGood(text, kMoment) && HasDay(text);
}

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
