// Two lines as date-times: each is refused, or kept as it is; and two are equal exactly when they are the same moment
// by the C library's calendar.

#include "Cost.h"
#include "Require.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <optional>
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

void CheckEquality(const CIMDateTime& a, const CIMDateTime& b) {
    const std::string_view left = a.toString().view();
    const std::string_view right = b.toString().view();
    const bool same =
        left == right || (IsMoment(left) && IsMoment(right) && MicrosecondsTo(left) == MicrosecondsTo(right));
    Require((a == b) == same && (b == a) == same, "date-times are equal exactly when they are the same moment");
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
