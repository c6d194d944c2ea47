#include "selection/DateTimeRange.h"

#include "host/TCIMDateTime.h"
#include "host/TVYXException.h"

#include <cstdlib>
#include <string_view>

namespace cimhttp {

namespace {

using NQORVYX20::TCIMDateTime;
using NQORVYX20::TVYXException;

constexpr long long kMicroseconds = 1000000; // of a second
constexpr long long kMinute = 60 * kMicroseconds;
constexpr long long kHour = 60 * kMinute;
constexpr long long kDay = 24 * kHour;
constexpr std::size_t kOffset = 21; // where the sign of the zone stands
constexpr std::size_t kDigitsOfFraction = 6;
constexpr std::size_t kDigitsOfDays = 8;
constexpr const char* kIntervalEnd = ":000";

// What stands in the place of asterisks at most and at least.
constexpr std::string_view kLowestInstant = "00000101000000.000000+000";
constexpr std::string_view kHighestInstant = "99991231235959.999999+999";
constexpr std::string_view kLowestInterval = "00000000000000.000000:000";
constexpr std::string_view kHighestInterval = "99999999235959.999999:000";

std::string Filled(std::string text, std::string_view filling) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        text[i] = text[i] == '*' ? filling[i] : text[i];
    }
    return text;
}

/// A zone that is not known may be any; the farther it is in the east, the earlier is the instant.
std::string FilledInstant(const std::string& text, std::string_view filling, char sign, const char* zone) {
    const bool hasZone = text[kOffset + 1] != '*';
    return Filled(hasZone ? text : text.substr(0, kOffset) + sign + zone, filling);
}

long long Number(const std::string& text, std::size_t offset, std::size_t length) {
    return std::strtoll(text.substr(offset, length).c_str(), nullptr, 10);
}

/// The days of the Gregorian calendar from the begin of the year 0 to that of a day. A year begins in March here, so
/// that the day that not all years have is its last.
long long DaysTo(long long year, long long month, long long day) {
    const long long years = month > 2 ? year : year - 1;
    const long long months = (month + 9) % 12;
    const long long leapDays = years < 0 ? -1 : years / 4 - years / 100 + years / 400;
    return years * 365 + leapDays + (months * 306 + 5) / 10 + day + 59;
}

long long TimeOfDay(const std::string& text) {
    const long long seconds = (Number(text, 8, 2) * 60 + Number(text, 10, 2)) * 60 + Number(text, 12, 2);
    return seconds * kMicroseconds + Number(text, 15, kDigitsOfFraction);
}

long long LengthOf(const std::string& text) { return Number(text, 0, kDigitsOfDays) * kDay + TimeOfDay(text); }

long long InstantOf(const std::string& text) {
    const long long offset = Number(text, kOffset, 4) * kMinute;
    return DaysTo(Number(text, 0, 4), Number(text, 4, 2), Number(text, 6, 2)) * kDay + TimeOfDay(text) - offset;
}

std::optional<TCIMDateTime> Checked(const std::string& characters) {
    try {
        return TCIMDateTime(characters);
    } catch (const TVYXException&) {
        return std::nullopt;
    }
}

/// Reads what a user writes from the left, and makes the characters of a date-time of it.
class Scanner {
  public:
    explicit Scanner(const std::string& text) : text_(text) {}

    /// `2026-11-21 08:39:00.5 +01:00`, or less of it; nothing for another text.
    std::optional<TCIMDateTime> Instant() {
        std::string characters = Digits(4);
        for (int i = 0; i < 2; ++i) {
            Demand('-');
            characters += Digits(2);
        }
        const bool isSeparate = Skip(' ') || Skip('T');
        const bool hasTime = isSeparate && IsDigit();
        characters += hasTime ? Time() : kMidnight;
        if (hasTime) {
            Skip(' ');
        }
        return Whole(characters + Zone());
    }

    /// `1 day 08:39:00.5`, `1 d 08:39`, or less of it; `5 h`, `3 min`, `30 s` or `0.25 s`.
    std::optional<TCIMDateTime> Interval() {
        const bool hasDays = text_.find('d') != std::string::npos;
        const std::string days = hasDays ? Days() : "";
        const bool hasTime = !hasDays || Skip(' ');
        const bool hasClock = text_.find(':') != std::string::npos;
        const std::string time = !hasTime ? kMidnight : hasClock ? Time() : PartOfTime();
        return Whole(std::string(kDigitsOfDays - days.size(), '0') + days + time + kIntervalEnd);
    }

  private:
    static constexpr const char* kMidnight = "000000.000000";
    static constexpr const char* kNoFraction = ".000000";

    bool IsDigit() const { return place_ < text_.size() && text_[place_] >= '0' && text_[place_] <= '9'; }

    bool Skip(char letter) {
        const bool isThere = place_ < text_.size() && text_[place_] == letter;
        place_ += isThere ? 1 : 0;
        return isThere;
    }

    void Demand(char letter) { isGood_ = Skip(letter) && isGood_; }

    /// As many as there are, but not more than these.
    std::string SomeDigits(std::size_t most) {
        std::string digits;
        for (; IsDigit() && digits.size() < most; ++place_) {
            digits += text_[place_];
        }
        isGood_ = isGood_ && !digits.empty();
        return digits;
    }

    std::string Digits(std::size_t count) {
        std::string digits = SomeDigits(count);
        isGood_ = isGood_ && digits.size() == count;
        return digits;
    }

    std::string Days() {
        std::string days = SomeDigits(kDigitsOfDays);
        Demand(' ');
        Demand('d');
        if (Skip('a')) {
            Demand('y');
            Skip('s');
        }
        return days;
    }

    /// `08:39`, `08:39:00` or `08:39:00.5`
    std::string Time() {
        std::string time = Digits(2);
        Demand(':');
        time += Digits(2);
        const bool hasSeconds = Skip(':');
        time += hasSeconds ? Digits(2) : "00";
        return time + (hasSeconds ? Fraction() : kNoFraction);
    }

    /// `5 h`, `3 min`, `30 s` or `0.25 s`
    std::string PartOfTime() {
        std::string number = SomeDigits(2);
        number.insert(0, 2 - number.size(), '0');
        const std::string fraction = Fraction();
        Demand(' ');
        if (fraction == kNoFraction && Skip('h')) {
            return number + "0000" + fraction;
        }
        if (fraction == kNoFraction && Skip('m')) {
            Demand('i');
            Demand('n');
            return "00" + number + "00" + fraction;
        }
        Demand('s');
        return "0000" + number + fraction;
    }

    /// `.5` as `.500000`; there need not be one.
    std::string Fraction() {
        const std::string digits = Skip('.') ? SomeDigits(kDigitsOfFraction) : "";
        return '.' + digits + std::string(kDigitsOfFraction - digits.size(), '0');
    }

    /// `+060` for `+01:00`. One that is too large has too many digits for a date-time.
    std::string Zone() {
        if (place_ == text_.size() || Skip('Z')) {
            return "+000";
        }
        const char sign = text_[place_];
        isGood_ = (Skip('+') || Skip('-')) && isGood_;
        const std::string hours = Digits(2);
        Demand(':');
        const std::string minutes = std::to_string(Number(hours, 0, 2) * 60 + Number(Digits(2), 0, 2));
        return sign + std::string(minutes.size() < 3 ? 3 - minutes.size() : 0, '0') + minutes;
    }

    std::optional<TCIMDateTime> Whole(const std::string& characters) const {
        return isGood_ && place_ == text_.size() ? Checked(characters) : std::nullopt;
    }

    const std::string& text_;
    std::size_t place_ = 0;
    bool isGood_ = true; // as far as it is read
};

} // namespace

DateTimeRange::DateTimeRange(const TCIMDateTime& dateTime) : isInterval(dateTime.IsInterval()) {
    const std::string text = dateTime.ToString();
    lowest = isInterval ? LengthOf(Filled(text, kLowestInterval))
                        : InstantOf(FilledInstant(text, kLowestInstant, '+', "999"));
    highest = isInterval ? LengthOf(Filled(text, kHighestInterval))
                         : InstantOf(FilledInstant(text, kHighestInstant, '-', "999"));
}

std::optional<TCIMDateTime> DateTimeIn(const std::string& text) {
    if (auto dateTime = Checked(text)) {
        return dateTime;
    }
    if (auto instant = Scanner(text).Instant()) {
        return instant;
    }
    return Scanner(text).Interval();
}

} // namespace cimhttp
