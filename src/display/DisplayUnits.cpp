#include "display/DisplayUnits.h"

#include "convert/LetterCase.h"
#include "host/TCIMDateTime.h"

#include <array>
#include <charconv>
#include <string_view>

namespace NQORVYX20 {

namespace {

struct TPrefix {
    std::string_view longText;
    std::string_view shortText;
};
constexpr std::array<TPrefix, 9> kPrefixes{{{"Peta", "P"},
                                            {"Tera", "T"},
                                            {"Giga", "G"},
                                            {"Mega", "M"},
                                            {"Kilo", "K"},
                                            {"", ""},
                                            {"Milli", "m"},
                                            {"Micro", "u"},
                                            {"Nano", "n"}}};
constexpr std::size_t kTera = 1;
constexpr std::size_t kKilo = 4;
constexpr std::size_t kNone = 5;

constexpr std::string_view kSeconds = "Seconds";
constexpr std::string_view kBytes = "Bytes";
constexpr std::string_view kBits = "Bits";
constexpr std::string_view kBytesPerSecond = "Bytes per Second";
constexpr std::string_view kBitsPerSecond = "Bits per Second";

constexpr std::uint64_t kMaxIntervalDays = 99999999; // the days of an interval have eight digits (DSP0004 5.2.4)

bool StartsWith(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }

std::size_t FindPrefix(const std::string& units) {
    for (std::size_t i = 0; i < kPrefixes.size(); ++i) {
        if (i != kNone && StartsWith(units, kPrefixes.at(i).longText)) {
            return i;
        }
    }
    return kNone;
}

/// The prefix to stop at; index 0 ends every scaling.
std::size_t FindTarget(const std::string& fixedPrefix) {
    for (std::size_t i = kTera; i <= kKilo; ++i) {
        if (fixedPrefix == kPrefixes.at(i).longText) {
            return i;
        }
    }
    return 0;
}

std::uint64_t TicksPerSecond(std::size_t prefix) {
    std::uint64_t ticks = 1;
    for (; prefix > kNone; --prefix) {
        ticks *= 1000;
    }
    return ticks;
}

/// One decimal, and that only when it is not zero. Rounded from the exact number, a tie to the even digit: a float
/// times ten is exact as a double.
void AppendNumber(float number, std::string& text) {
    constexpr double kTenths = 10;
    constexpr double kGreatest = 1e15;
    std::array<char, 32> buffer; // 2^64 has 20 digits
    char* const begin = buffer.data();
    char* const limit = begin + buffer.size();
    const double scaled = static_cast<double>(number) * kTenths;
    if (scaled >= kGreatest) { // a float as large as that is whole
        text.append(begin, std::to_chars(begin, limit, static_cast<double>(number), std::chars_format::fixed, 0).ptr);
        return;
    }
    auto tenths = static_cast<std::uint64_t>(scaled);
    const double rest = scaled - static_cast<double>(tenths);
    tenths += rest > 0.5 || (rest == 0.5 && tenths % 2 != 0) ? 1 : 0;
    char* end = std::to_chars(begin, limit, tenths / 10).ptr;
    if (tenths % 10 != 0) {
        *end++ = '.';
        *end++ = static_cast<char>('0' + tenths % 10);
    }
    text.append(begin, end);
}

} // namespace

DisplayUnits::DisplayUnits(const std::string& units)
    : prefix_(FindPrefix(units)), base_(units.substr(kPrefixes.at(prefix_).longText.size())) {}

bool DisplayUnits::IsTime() const { return base_ == kSeconds; }

bool DisplayUnits::IsData() const {
    return base_ == kBytes || base_ == kBits || base_ == kBytesPerSecond || base_ == kBitsPerSecond;
}

std::optional<std::string> DisplayUnits::TimeText(std::uint64_t number) const {
    TCIMDateTime interval;
    if (prefix_ >= kNone) {
        const std::uint64_t ticks = TicksPerSecond(prefix_);
        const std::uint64_t seconds = number / ticks;
        const std::uint64_t days = seconds / 86400;
        if (days > kMaxIntervalDays) {
            return std::nullopt;
        }
        interval.Set(static_cast<unsigned int>(days), static_cast<unsigned short>(seconds / 3600 % 24),
                     static_cast<unsigned short>(seconds / 60 % 60), static_cast<unsigned short>(seconds % 60),
                     static_cast<unsigned int>(number % ticks * 1000000 / ticks));
    }
    return interval.ToUIString();
}

void DisplayUnits::AppendData(std::uint64_t number, const std::string& fixedPrefix, bool isAbbreviated,
                              std::string& text) const {
    const std::size_t target = fixedPrefix.empty() ? 0 : FindTarget(fixedPrefix);
    const float divisor = Divisor();
    auto scaled = static_cast<float>(number);
    std::size_t prefix = prefix_;
    while (prefix > target && (target != 0 || scaled >= divisor)) {
        scaled /= divisor;
        --prefix;
    }
    AppendNumber(scaled, text);
    text += ' ';
    if (isAbbreviated) {
        AppendShortUnit(prefix, text);
    } else {
        AppendLongUnit(prefix, text);
    }
}

float DisplayUnits::Divisor() const { return base_ == kBitsPerSecond ? 1000.0F : 1024.0F; }

/// In small letters but for the first.
void DisplayUnits::AppendLongUnit(std::size_t prefix, std::string& text) const {
    const std::size_t begin = text.size();
    text += kPrefixes.at(prefix).longText;
    text += base_;
    for (std::size_t i = begin + 1; i < text.size(); ++i) {
        text[i] = ToLower(text[i]);
    }
}

void DisplayUnits::AppendShortUnit(std::size_t prefix, std::string& text) const {
    text += kPrefixes.at(prefix).shortText;
    if (base_ == kBytes) {
        text += 'B';
    } else if (base_ == kBytesPerSecond) {
        text += "B/s";
    } else if (base_ == kBitsPerSecond) {
        text += "bps";
    } else {
        text += base_; // bits have no short form: one letter, B or b, is all that would tell them from bytes
    }
}

} // namespace NQORVYX20
