// Two lines as date-times: each is refused, or kept as it is; and two are equal exactly when they are the same moment
// by the C library's calendar, as far as both say which it is.

#include "Cost.h"
#include "Require.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

using namespace Pegasus;

namespace {

std::optional<CIMDateTime> DateTimeIn(std::string_view text) {
    try {
        return CIMDateTime(String(text));
    } catch (const InvalidDateTimeFormatException&) {
    } catch (const DateTimeOutOfRangeException&) {
    }
    return std::nullopt;
}

int NumberIn(std::string_view digits) {
    int number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

/// Whether a text is a point in time of which every field is known.
bool IsMoment(std::string_view text) { return text[21] != ':' && text.find('*') == std::string_view::npos; }

/// Date and time of day of a moment, as the C library has them.
std::tm CalendarOf(std::string_view moment) {
    std::tm calendar{};
    calendar.tm_year = NumberIn(moment.substr(0, 4)) - 1900;
    calendar.tm_mon = NumberIn(moment.substr(4, 2)) - 1;
    calendar.tm_mday = NumberIn(moment.substr(6, 2));
    calendar.tm_hour = NumberIn(moment.substr(8, 2));
    calendar.tm_min = NumberIn(moment.substr(10, 2));
    calendar.tm_sec = NumberIn(moment.substr(12, 2));
    return calendar;
}

/// Microseconds since 1970 in UTC.
std::int64_t MicrosecondsTo(std::string_view moment) {
    std::tm calendar = CalendarOf(moment);
    const std::int64_t offset = std::int64_t{60} * NumberIn(moment.substr(22, 3));
    return (std::int64_t{timegm(&calendar)} + (moment[21] == '-' ? offset : -offset)) * 1000000 +
           NumberIn(moment.substr(15, 6));
}

void CheckText(const CIMDateTime& dateTime, std::string_view text) {
    Require(dateTime.toString().view() == text, "a date-time keeps its text");
    Require(dateTime.isInterval() == (text[21] == ':'), "an interval has a colon");
    Require(dateTime == CIMDateTime(dateTime.toString()), "a date-time is written and read back as the same");
}

/// The C library moves a day that does not exist into the next month.
void CheckDayExists(std::string_view text) {
    if (!IsMoment(text)) {
        return;
    }
    std::tm calendar = CalendarOf(text);
    timegm(&calendar);
    Require(calendar.tm_mday == NumberIn(text.substr(6, 2)), "the day of a date-time exists");
}

bool IsInterval(std::string_view text) { return text[21] == ':'; }

/// Where the offset from UTC may lead out of the years that have four digits.
bool IsAtAnEndOfTime(std::string_view text) {
    return !IsInterval(text) && (text.substr(0, 4) == "0000" || text.substr(0, 4) == "9999");
}

/// What a date-time says, up to the first asterisk: in UTC where that is known, which takes hours and minutes.
std::string SaidBy(std::string_view text) {
    const std::size_t known = std::min(text.find('*'), std::size_t{21});
    std::string said(text.substr(0, known));
    if (IsInterval(text) || known < 12) {
        return said;
    }
    constexpr std::string_view kZeros = "00000000000000.000000";
    const std::string whole = said + std::string(kZeros.substr(known)) + std::string(text.substr(21));
    const std::time_t seconds = MicrosecondsTo(whole) / 1000000 - (MicrosecondsTo(whole) % 1000000 < 0 ? 1 : 0);
    std::tm calendar{};
    gmtime_r(&seconds, &calendar);
    std::array<char, 32> utc{};
    std::snprintf(utc.data(), utc.size(), "%04d%02d%02d%02d%02d%02d", calendar.tm_year + 1900, calendar.tm_mon + 1,
                  calendar.tm_mday, calendar.tm_hour, calendar.tm_min, calendar.tm_sec);
    return (utc.data() + whole.substr(14)).substr(0, known);
}

bool SayTheSame(std::string_view left, std::string_view right) {
    const std::string one = SaidBy(left);
    const std::string other = SaidBy(right);
    const std::size_t both = std::min(one.size(), other.size());
    return IsInterval(left) == IsInterval(right) && one.compare(0, both, other, 0, both) == 0;
}

void CheckEquality(const CIMDateTime& a, const CIMDateTime& b) {
    const std::string_view left = a.toString().view();
    const std::string_view right = b.toString().view();
    Require((a == b) == (b == a), "it does not matter which of two date-times is compared with the other");
    if (IsMoment(left) && IsMoment(right)) {
        Require((a == b) == (MicrosecondsTo(left) == MicrosecondsTo(right)), "the same moment is equal, and no other");
    } else if (!IsAtAnEndOfTime(left) && !IsAtAnEndOfTime(right)) {
        Require((a == b) == SayTheSame(left, right), "date-times are equal when they are as far as both say");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CostGuard guard(kReaderBounds, size);
    const std::string_view text(size != 0 ? reinterpret_cast<const char*>(data) : "", size);
    const std::size_t line = std::min(text.find('\n'), text.size());
    const std::string_view first = text.substr(0, line);
    const std::string_view second = text.substr(std::min(line + 1, text.size()));
    const auto a = DateTimeIn(first);
    const auto b = DateTimeIn(second);
    if (a) {
        CheckText(*a, first);
        CheckDayExists(first);
    }
    if (a && b) {
        CheckEquality(*a, *b);
    }
    return 0;
}
