#include "display/SpanText.h"

#include "display/NumberText.h"
#include "display/PrefixedText.h"

namespace NQORVYX20 {

namespace {

using TNumber = Fraction::TNumber;

constexpr unsigned kMinute = 60;
constexpr unsigned kHour = 3600;
constexpr unsigned kDay = 86400;

std::string TwoDigits(unsigned number) { return (number < 10 ? "0" : "") + std::to_string(number); }

/// `3 min` and the like; empty for what is no multiple.
std::string MultipleText(TNumber seconds) {
    if (seconds % kDay == 0) {
        return NumberText(seconds / kDay, 0) + " d";
    }
    if (seconds % kHour == 0 && seconds < kDay) {
        return NumberText(seconds / kHour, 0) + " h";
    }
    return seconds % kMinute == 0 && seconds < kHour ? NumberText(seconds / kMinute, 0) + " min" : std::string();
}

std::string ClockOf(TNumber seconds, const std::string& fraction) {
    const auto rest = static_cast<unsigned>(seconds % kDay);
    const TNumber days = seconds / kDay;
    const std::string clock = ClockText(0, rest / kHour, rest / kMinute % 60, rest % 60, fraction);
    return days == 0 ? clock : NumberText(days, 0) + " d " + clock;
}

} // namespace

std::string SpanText(const Fraction& seconds) {
    if (seconds.IsZero()) {
        return "0 s";
    }
    if (!seconds.IsAtLeast(kMinute)) {
        return PrefixedText(seconds, 1000, "s");
    }
    if (const auto whole = seconds.Whole()) {
        const std::string text = MultipleText(*whole);
        return text.empty() ? ClockOf(*whole, {}) : text;
    }
    const auto tenths = seconds.Times(10);
    const TNumber rounded = tenths ? tenths->Rounded() : seconds.Rounded() * 10;
    return ClockOf(rounded / 10, std::to_string(static_cast<unsigned>(rounded % 10)));
}

std::string ClockText(std::uint64_t days, unsigned hours, unsigned minutes, unsigned seconds,
                      const std::string& fraction) {
    return (days == 0 ? "" : std::to_string(days) + " d ") + TwoDigits(hours) + ':' + TwoDigits(minutes) + ':' +
           TwoDigits(seconds) + (fraction.empty() ? "" : '.' + fraction);
}

} // namespace NQORVYX20
