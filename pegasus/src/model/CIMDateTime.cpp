#include <Pegasus/Common/CIMDateTime.h>

#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>

namespace Pegasus {

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

constexpr bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

std::string_view textOf(const Field& field, std::string_view text) { return text.substr(field.offset, field.length); }

Uint32 numberIn(std::string_view digits) noexcept {
    Uint32 number = 0;
    for (const char c : digits)
        number = 10 * number + static_cast<Uint32>(c - '0');
    return number;
}

bool isNumber(std::string_view text) noexcept { return std::all_of(text.begin(), text.end(), isDigit); }

/// Whether the fields are digits down to some place and asterisks from there on. Only the microseconds may be cut
/// within the field.
template <std::size_t count>
bool areWellFormed(std::string_view text, const std::array<Field, count>& fields) {
    bool unknown = false;
    for (const Field& field : fields) {
        const std::string_view digits = textOf(field, text);
        const std::size_t known = std::min(digits.find('*'), digits.size());
        const bool cutWithin = known != 0 && known != digits.size() && field.offset < kDot;
        if (!isNumber(digits.substr(0, known)) || digits.find_first_not_of('*', known) != std::string_view::npos ||
            cutWithin || (unknown && known != 0))
            return false;
        unknown = known != digits.size();
    }
    return true;
}

bool isWellFormed(std::string_view text) {
    if (text.size() != kLength || text[kDot] != '.' || !isNumber(textOf(kOffset, text)))
        return false;
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
        if (!isNumber(digits))
            continue;
        const Uint32 number = numberIn(digits);
        if (number < field.minimum || number > field.maximum)
            throwOutOfRange(field.name, text);
    }
}

Uint32 daysIn(Uint32 month, Uint32 year) noexcept {
    constexpr std::array<Uint32, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leapYear = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return kDays[month - 1] + (month == 2 && leapYear ? 1U : 0U);
}

void checkDayOfMonth(std::string_view text) {
    const std::string_view date = text.substr(0, 8);
    if (isNumber(date) && numberIn(date.substr(6)) > daysIn(numberIn(date.substr(4, 2)), numberIn(date.substr(0, 4))))
        throwOutOfRange("day", text);
}

/// Days since the first of March of the year 0 in the Gregorian calendar, where a year ends with February.
Sint64 dayNumber(Sint64 year, Sint64 month, Sint64 day) noexcept {
    const Sint64 y = month > 2 ? year : year - 1;
    const Sint64 monthsSinceMarch = (month + 9) % 12;
    const Sint64 leapDays = y >= 0 ? y / 4 - y / 100 + y / 400 : -1;
    return 365 * y + leapDays + (153 * monthsSinceMarch + 2) / 5 + day;
}

/// The moment in microseconds; nothing for intervals and where asterisks stand.
std::optional<Sint64> momentOf(std::string_view text) {
    if (text[kSign] == ':' || text.find('*') != std::string_view::npos)
        return std::nullopt;
    const auto number = [&](const Field& field) { return static_cast<Sint64>(numberIn(textOf(field, text))); };
    const auto& [year, month, day, hour, minute, second, microsecond] = kTimestampFields;
    const Sint64 offset = text[kSign] == '+' ? number(kOffset) : -number(kOffset);
    const Sint64 minutes =
        (dayNumber(number(year), number(month), number(day)) * 24 + number(hour)) * 60 + number(minute) - offset;
    return (minutes * 60 + number(second)) * 1000000 + number(microsecond);
}

/// Made when the library is loaded: those who ask for it later must not be short of memory for it.
const String kZeroInterval("00000000000000.000000:000");

} // namespace

CIMDateTime::CIMDateTime(const String& text) : text_(text) {
    const std::string_view characters = text_.view();
    if (!isWellFormed(characters))
        throw InvalidDateTimeFormatException(text);
    if (isInterval()) {
        checkRanges(characters, kIntervalFields);
    } else {
        checkRanges(characters, kTimestampFields);
        checkDayOfMonth(characters);
    }
}

const String& CIMDateTime::toString() const noexcept { return text_.empty() ? kZeroInterval : text_; }

Boolean CIMDateTime::isInterval() const noexcept { return toString().view()[kSign] == ':'; }

Boolean CIMDateTime::equal(const CIMDateTime& other) const noexcept {
    const String& text = toString();
    const String& otherText = other.toString();
    if (String::equal(text, otherText))
        return true;
    const auto moment = momentOf(text.view());
    return moment && moment == momentOf(otherText.view());
}

} // namespace Pegasus
