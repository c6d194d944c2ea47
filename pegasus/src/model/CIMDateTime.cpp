#include "text/Ascii.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <string>

namespace Pegasus {
inline namespace bundled {

namespace {

constexpr std::size_t kLength = 25;
constexpr std::size_t kDot = 14;
constexpr std::size_t kSign = 21;

/// A run of digits, or of asterisks where the number is not known.
struct Field {
    const char* name;
    std::size_t offset;
    std::size_t length;
    Uint32 minimum;
    Uint32 maximum;
};

// From the most to the least significant field.
constexpr std::array<Field, 7> kTimestampFields = {{{"year", 0, 4, 0, 9999},
                                                    {"month", 4, 2, 1, 12},
                                                    {"day", 6, 2, 1, 31},
                                                    {"hour", 8, 2, 0, 23},
                                                    {"minute", 10, 2, 0, 59},
                                                    {"second", 12, 2, 0, 59},
                                                    {"microsecond", 15, 6, 0, 999999}}};
constexpr std::array<Field, 5> kIntervalFields = {{{"day", 0, 8, 0, 99999999},
                                                   {"hour", 8, 2, 0, 23},
                                                   {"minute", 10, 2, 0, 59},
                                                   {"second", 12, 2, 0, 59},
                                                   {"microsecond", 15, 6, 0, 999999}}};
constexpr Field kOffset = {"offset from UTC", 22, 3, 0, 999};

std::string_view textOf(const Field& field, std::string_view text) { return text.substr(field.offset, field.length); }

Uint32 numberIn(std::string_view digits) noexcept {
    Uint32 number = 0;
    for (const char c : digits) {
        number = 10 * number + static_cast<Uint32>(c - '0');
    }
    return number;
}

bool isNumber(std::string_view text) noexcept { return std::all_of(text.begin(), text.end(), text::isDigit); }

/// Whether the fields are digits down to some place and asterisks from there on. Only the microseconds may be cut
/// within the field.
template <std::size_t count>
bool areWellFormed(std::string_view text, const std::array<Field, count>& fields) {
    if (text.find('*') == std::string_view::npos) {
        return isNumber(text.substr(0, kDot)) && isNumber(text.substr(kDot + 1, kSign - kDot - 1));
    }
    bool unknown = false;
    for (const Field& field : fields) {
        const std::string_view digits = textOf(field, text);
        const std::size_t known = std::min(digits.find('*'), digits.size());
        const bool cutWithin = known != 0 && known != digits.size() && field.offset < kDot;
        if (!isNumber(digits.substr(0, known)) || digits.find_first_not_of('*', known) != std::string_view::npos ||
            cutWithin || (unknown && known != 0)) {
            return false;
        }
        unknown = known != digits.size();
    }
    return true;
}

bool isWellFormed(std::string_view text) {
    if (text.size() != kLength || text[kDot] != '.' || !isNumber(textOf(kOffset, text))) {
        return false;
    }
    switch (text[kSign]) {
    case ':':
        return numberIn(textOf(kOffset, text)) == 0 && areWellFormed(text, kIntervalFields);
    case '+':
    case '-':
        return areWellFormed(text, kTimestampFields);
    default:
        return false;
    }
}

[[noreturn]] void throwOutOfRange(const char* field, std::string_view text) {
    throw DateTimeOutOfRangeException(
        String(std::string_view(std::string(field) + " out of range in datetime " + std::string(text))));
}

template <std::size_t count>
void checkRanges(std::string_view text, const std::array<Field, count>& fields) {
    for (const Field& field : fields) {
        const std::string_view digits = textOf(field, text);
        if (!isNumber(digits)) {
            continue;
        }
        const Uint32 number = numberIn(digits);
        if (number < field.minimum || number > field.maximum) {
            throwOutOfRange(field.name, text);
        }
    }
}

Uint32 daysIn(Uint32 month, Uint32 year) noexcept {
    constexpr std::array<Uint32, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leapYear = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return kDays[month - 1] + (month == 2 && leapYear ? 1U : 0U);
}

void checkDayOfMonth(std::string_view text) {
    const std::string_view date = text.substr(0, 8);
    if (isNumber(date) && numberIn(date.substr(6)) > daysIn(numberIn(date.substr(4, 2)), numberIn(date.substr(0, 4)))) {
        throwOutOfRange("day", text);
    }
}

/// Days since the first of March of the year 0 in the Gregorian calendar, where a year ends with February.
Sint64 dayNumber(Sint64 year, Sint64 month, Sint64 day) noexcept {
    const Sint64 y = month > 2 ? year : year - 1;
    const Sint64 monthsSinceMarch = (month + 9) % 12;
    const Sint64 leapDays = y >= 0 ? y / 4 - y / 100 + y / 400 : -1;
    return 365 * y + leapDays + (153 * monthsSinceMarch + 2) / 5 + day;
}

/// The text with the least numbers in the place of asterisks.
std::string leastOf(std::string_view text) {
    constexpr std::string_view kLeast = "00000101000000.000000";
    std::string least(text);
    for (std::size_t i = 0; i < kSign; ++i) {
        if (least[i] == '*') {
            least[i] = text[kSign] == ':' ? '0' : kLeast[i];
        }
    }
    return least;
}

/// The length of an interval in microseconds.
Sint64 lengthOf(std::string_view text) {
    const auto number = [&](const Field& field) { return static_cast<Sint64>(numberIn(textOf(field, text))); };
    const auto& [day, hour, minute, second, microsecond] = kIntervalFields;
    return (((number(day) * 24 + number(hour)) * 60 + number(minute)) * 60 + number(second)) * 1000000 +
           number(microsecond);
}

/// The moment in microseconds, of a point in time without asterisks.
Sint64 momentOf(std::string_view text) {
    const auto number = [&](const Field& field) { return static_cast<Sint64>(numberIn(textOf(field, text))); };
    const auto& [year, month, day, hour, minute, second, microsecond] = kTimestampFields;
    const Sint64 offset = text[kSign] == '+' ? number(kOffset) : -number(kOffset);
    const Sint64 minutes =
        (dayNumber(number(year), number(month), number(day)) * 24 + number(hour)) * 60 + number(minute) - offset;
    return (minutes * 60 + number(second)) * 1000000 + number(microsecond);
}

constexpr Sint64 kMicrosecondsOfDay = Sint64{24} * 60 * 60 * 1000000;

/// The date of a day, the reverse of dayNumber().
std::array<Sint64, 3> dateOf(Sint64 dayNumberOfIt) noexcept {
    const Sint64 days = dayNumberOfIt - 1;
    Sint64 year = days / 366; // not after the right one
    while (dayNumber(year + 1, 3, 1) <= dayNumberOfIt) {
        ++year;
    }
    const Sint64 ofYear = dayNumberOfIt - dayNumber(year, 3, 1);
    const Sint64 monthsSinceMarch = (5 * ofYear + 2) / 153;
    const Sint64 month = (monthsSinceMarch + 2) % 12 + 1;
    return {month > 2 ? year : year + 1, month, ofYear - (153 * monthsSinceMarch + 2) / 5 + 1};
}

std::string digits(Sint64 number, std::size_t width) {
    const std::string text = std::to_string(number);
    return std::string(width - std::min(width, text.size()), '0') + text;
}

/// The characters before the offset, of a moment in UTC.
std::string utcText(Sint64 moment) {
    const auto [year, month, day] = dateOf(moment / kMicrosecondsOfDay);
    const Sint64 time = moment % kMicrosecondsOfDay;
    const Sint64 seconds = time / 1000000;
    return digits(year, 4) + digits(month, 2) + digits(day, 2) + digits(seconds / 3600, 2) +
           digits(seconds / 60 % 60, 2) + digits(seconds % 60, 2) + '.' + digits(time % 1000000, 6);
}

/// The known characters by which date-times are compared: in UTC where the time is known to the minute, otherwise
/// without the offset.
std::string comparableText(std::string_view text) {
    constexpr std::size_t kEndOfMinutes = 12;
    const std::string_view known = text.substr(0, std::min(text.find('*'), kSign));
    if (text[kSign] == ':' || known.size() < kEndOfMinutes) {
        return std::string(known);
    }
    const Sint64 moment = momentOf(leastOf(text));
    const bool hasText =
        moment >= dayNumber(0, 3, 1) * kMicrosecondsOfDay && moment < dayNumber(10000, 1, 1) * kMicrosecondsOfDay;
    return hasText ? utcText(moment).substr(0, known.size()) : std::string(known);
}

/// Made when the library is loaded, so that it takes no memory when it is used.
const String kZeroInterval("00000000000000.000000:000");

/// Throws DateTimeOutOfRangeException for one that is too wide.
std::string number(Uint32 value, std::size_t width) {
    std::string text = digits(value, width);
    if (text.size() > width) {
        throw DateTimeOutOfRangeException(String("a field of a datetime is out of range: " + text));
    }
    return text;
}

std::string time(Uint32 hours, Uint32 minutes, Uint32 seconds) {
    return number(hours, 2) + number(minutes, 2) + number(seconds, 2);
}

std::string fraction(Uint32 microseconds, Uint32 significantDigits) {
    std::string text = number(microseconds, 6);
    for (std::size_t i = significantDigits; i < text.size(); ++i) {
        text[i] = '*';
    }
    return text;
}

} // namespace

CIMDateTime::CIMDateTime(const String& text) : text_(text) {
    const std::string_view characters = text_.view();
    if (!isWellFormed(characters)) {
        throw InvalidDateTimeFormatException(text);
    }
    if (isInterval()) {
        checkRanges(characters, kIntervalFields);
    } else {
        checkRanges(characters, kTimestampFields);
        checkDayOfMonth(characters);
    }
}

const String& CIMDateTime::toString() const noexcept { return text_.empty() ? kZeroInterval : text_; }

Boolean CIMDateTime::isInterval() const noexcept { return toString().view()[kSign] == ':'; }

Boolean CIMDateTime::equal(const CIMDateTime& other) const {
    const String& text = toString();
    const String& otherText = other.toString();
    if (String::equal(text, otherText)) {
        return true;
    }
    if (isInterval() != other.isInterval()) {
        return false;
    }
    const auto hasAsterisk = [](const String& one) { return one.view().find('*') != std::string_view::npos; };
    const bool saysAll = !hasAsterisk(text) && !hasAsterisk(otherText);
    if (saysAll && !isInterval()) {
        return momentOf(text.view()) == momentOf(otherText.view());
    }
    const std::string one = comparableText(text.view());
    const std::string two = comparableText(otherText.view());
    const std::size_t known = std::min(one.size(), two.size());
    return one.compare(0, known, two, 0, known) == 0;
}

void CIMDateTime::setInterval(Uint32 days, Uint32 hours, Uint32 minutes, Uint32 seconds, Uint32 microseconds,
                              Uint32 numberSignificantMicrosecondDigits) {
    *this = CIMDateTime(String(number(days, 8) + time(hours, minutes, seconds) + '.' +
                               fraction(microseconds, numberSignificantMicrosecondDigits) + ":000"));
}

void CIMDateTime::setTimeStamp(Uint32 year, Uint32 month, Uint32 day, Uint32 hours, Uint32 minutes, Uint32 seconds,
                               Uint32 microseconds, Uint32 numberSignificantMicrosecondDigits, Sint32 utcOffset) {
    const std::string offset =
        (utcOffset < 0 ? '-' : '+') +
        number(utcOffset < 0 ? 0 - static_cast<Uint32>(utcOffset) : static_cast<Uint32>(utcOffset), 3);
    *this = CIMDateTime(String(number(year, 4) + number(month, 2) + number(day, 2) + time(hours, minutes, seconds) +
                               '.' + fraction(microseconds, numberSignificantMicrosecondDigits) + offset));
}

Uint64 CIMDateTime::toMicroSeconds() const {
    const std::string text = leastOf(toString().view());
    if (isInterval()) {
        return static_cast<Uint64>(lengthOf(text));
    }
    const Sint64 beginning = dayNumber(0, 1, 1) * kMicrosecondsOfDay;
    return static_cast<Uint64>(std::max(momentOf(text) - beginning, Sint64{0}));
}

Sint64 CIMDateTime::getDifference(CIMDateTime start, CIMDateTime finish) {
    if (start.isInterval() != finish.isInterval()) {
        throw InvalidDateTimeFormatException(start.toString() + String(" and ") + finish.toString());
    }
    return static_cast<Sint64>(finish.toMicroSeconds()) - static_cast<Sint64>(start.toMicroSeconds());
}

CIMDateTime CIMDateTime::getCurrentDateTime() {
    ::timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    std::tm parts{};
    ::localtime_r(&now.tv_sec, &parts);
    const auto part = [](int value) { return static_cast<Uint32>(value); };
    CIMDateTime current;
    current.setTimeStamp(part(parts.tm_year + 1900), part(parts.tm_mon + 1), part(parts.tm_mday), part(parts.tm_hour),
                         part(parts.tm_min), std::min(part(parts.tm_sec), Uint32{59}),
                         static_cast<Uint32>(now.tv_nsec / 1000), 6, static_cast<Sint32>(parts.tm_gmtoff / 60));
    return current;
}

} // namespace bundled
} // namespace Pegasus
