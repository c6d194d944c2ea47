#include "host/TCIMDateTime.h"

#include "host/TVYXException.h"

#include <algorithm>
#include <string_view>

namespace NQORVYX20 {

namespace {

constexpr std::string_view kZeroInterval = "00000000000000.000000:000";
constexpr std::string_view kIntervalEnd = ":000";

// A field of the text. Timestamps and intervals share all but the first, which holds the date or the days.
struct TField {
    std::size_t offset;
    std::size_t length;
};
constexpr TField kDays{0, 8};
constexpr TField kYear{0, 4};
constexpr TField kMonth{4, 2};
constexpr TField kDay{6, 2};
constexpr TField kHours{8, 2};
constexpr TField kMinutes{10, 2};
constexpr TField kSeconds{12, 2};
constexpr TField kMicroseconds{15, 6};
constexpr TField kOffset{22, 3};
constexpr std::size_t kDot = 14;
constexpr std::size_t kSign = 21;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view Digits(std::string_view text, TField field) { return text.substr(field.offset, field.length); }

bool IsSignificant(std::string_view text, TField field) { return text[field.offset] != '*'; }

unsigned int Number(std::string_view digits) {
    unsigned int number = 0;
    for (const char digit : digits) {
        number = number * 10 + static_cast<unsigned int>(digit - '0');
    }
    return number;
}

unsigned int Number(std::string_view text, TField field) { return Number(Digits(text, field)); }

// Asterisks throughout, or a number in the range.
bool IsField(std::string_view text, TField field, unsigned int lowest, unsigned int highest) {
    const std::string_view digits = Digits(text, field);
    if (digits.find_first_not_of('*') == std::string_view::npos) {
        return true;
    }
    if (!std::all_of(digits.begin(), digits.end(), IsDigit)) {
        return false;
    }
    const unsigned int number = Number(digits);
    return number >= lowest && number <= highest;
}

// Digits, the last of which may be asterisks (DSP0004 5.2.4).
bool AreMicroseconds(std::string_view text) {
    const std::string_view digits = Digits(text, kMicroseconds);
    const auto* const asterisk = std::find_if_not(digits.begin(), digits.end(), IsDigit);
    return std::all_of(asterisk, digits.end(), [](char c) { return c == '*'; });
}

bool IsLeapYear(unsigned int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

// The last day that the month can have, as far as month and year are known.
unsigned int LastDay(std::string_view text) {
    constexpr std::array<unsigned int, 12> kLastDays{31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (!IsSignificant(text, kMonth)) {
        return 31;
    }
    const unsigned int month = Number(text, kMonth);
    if (month == 2 && IsSignificant(text, kYear) && !IsLeapYear(Number(text, kYear))) {
        return 28;
    }
    return kLastDays.at(month - 1);
}

bool IsTimeOfDay(std::string_view text, unsigned int lastSecond) {
    return IsField(text, kHours, 0, 23) && IsField(text, kMinutes, 0, 59) && IsField(text, kSeconds, 0, lastSecond) &&
           text[kDot] == '.' && AreMicroseconds(text);
}

bool IsIntervalText(std::string_view text) {
    return IsField(text, kDays, 0, 99999999) && IsTimeOfDay(text, 59) && text.substr(kSign) == kIntervalEnd;
}

bool IsTimestampText(std::string_view text) {
    return IsField(text, kYear, 0, 9999) && IsField(text, kMonth, 1, 12) && IsField(text, kDay, 1, LastDay(text)) &&
           IsTimeOfDay(text, 60) && (text[kSign] == '+' || text[kSign] == '-') && IsField(text, kOffset, 0, 999);
}

void Write(char* text, TField field, unsigned int number) {
    for (std::size_t i = field.length; i-- > 0; number /= 10) {
        text[field.offset + i] = static_cast<char>('0' + number % 10);
    }
}

void AppendTwoDigits(std::string& text, unsigned int number) {
    text += static_cast<char>('0' + number / 10 % 10);
    text += static_cast<char>('0' + number % 10);
}

// The significant ones of the fields.
template <std::size_t kCount>
std::string Join(std::string_view text, const std::array<TField, kCount>& fields, char separator) {
    std::string joined;
    for (const TField field : fields) {
        if (!IsSignificant(text, field)) {
            continue;
        }
        if (!joined.empty()) {
            joined += separator;
        }
        joined += Digits(text, field);
    }
    return joined;
}

std::string TimeForPeople(std::string_view text) {
    std::string time = Join(text, std::array{kHours, kMinutes, kSeconds}, ':');
    std::string_view microseconds = Digits(text, kMicroseconds);
    microseconds = microseconds.substr(0, microseconds.find('*'));
    const bool hasAny = microseconds.find_first_not_of('0') != std::string_view::npos;
    if (hasAny && IsSignificant(text, kSeconds)) {
        time.append(".").append(microseconds);
    }
    return time;
}

std::string DaysForPeople(std::string_view text, bool alsoZero) {
    if (!IsSignificant(text, kDays)) {
        return {};
    }
    const unsigned int days = Number(text, kDays);
    if (days == 0 && !alsoZero) {
        return {};
    }
    return std::to_string(days) + (days == 1 ? " day" : " days");
}

std::string TimeZoneForPeople(std::string_view text) {
    if (!IsSignificant(text, kOffset)) {
        return {};
    }
    const unsigned int minutes = Number(text, kOffset);
    std::string zone(1, text[kSign]);
    AppendTwoDigits(zone, minutes / 60);
    zone += ':';
    AppendTwoDigits(zone, minutes % 60);
    return zone;
}

std::string JoinWords(std::string words, const std::string& word) {
    if (!words.empty() && !word.empty()) {
        words += ' ';
    }
    return words + word;
}

} // namespace

TCIMDateTime::TCIMDateTime() { std::copy(kZeroInterval.begin(), kZeroInterval.end(), text_.begin()); }

TCIMDateTime::TCIMDateTime(const std::string& text) {
    if (text.size() != kLength || !(text[kSign] == ':' ? IsIntervalText(text) : IsTimestampText(text))) {
        throw TVYXException(TVYXStatusCode::eTypeMismatch);
    }
    std::copy(text.begin(), text.end(), text_.begin());
}

void TCIMDateTime::Set(unsigned int days, unsigned short hours, unsigned short minutes, unsigned short seconds,
                       unsigned int microseconds) {
    if (days > 99999999 || hours > 23 || minutes > 59 || seconds > 59 || microseconds > 999999) {
        throw TVYXException(TVYXStatusCode::eTypeMismatch);
    }
    *this = TCIMDateTime();
    Write(text_.data(), kDays, days);
    Write(text_.data(), kHours, hours);
    Write(text_.data(), kMinutes, minutes);
    Write(text_.data(), kSeconds, seconds);
    Write(text_.data(), kMicroseconds, microseconds);
}

bool TCIMDateTime::IsInterval() const { return text_[kSign] == ':'; }

std::string TCIMDateTime::ToString() const { return {text_.begin(), text_.end()}; }

std::string TCIMDateTime::ToUIString() const {
    const std::string_view text(text_.data(), text_.size());
    const std::string time = TimeForPeople(text);
    if (IsInterval()) {
        return JoinWords(DaysForPeople(text, time.empty()), time);
    }
    const std::string date = Join(text, std::array{kYear, kMonth, kDay}, '-');
    return JoinWords(JoinWords(date, time), TimeZoneForPeople(text));
}

} // namespace NQORVYX20
