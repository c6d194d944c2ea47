#include "display/DateTimeText.h"

#include "display/SpanText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>

namespace NQORVYX20 {

namespace {

struct TField {
    std::size_t begin;
    std::size_t length;
};

// Where the fields stand among the 25 characters (DSP0004 5.2.4).
constexpr std::array<TField, 6> kStampFields{{{0, 4}, {4, 2}, {6, 2}, {8, 2}, {10, 2}, {12, 2}}};
constexpr std::array<TField, 4> kSpanFields{{{0, 8}, {8, 2}, {10, 2}, {12, 2}}};
constexpr TField kMicroseconds{15, 6};
constexpr TField kOffset{22, 3};
constexpr std::size_t kSign = 21;
constexpr std::size_t kLength = 25;

std::uint64_t NumberOf(std::string_view digits) {
    std::uint64_t number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

/// The parts of a date-time.
class Parts {
  public:
    explicit Parts(std::string_view text) : text_(text), hasAsterisks_(text.find('*') != std::string_view::npos) {}

    std::string_view At(const TField& field) const { return text_.substr(field.begin, field.length); }
    bool IsGiven(const TField& field) const { return !hasAsterisks_ || At(field).find('*') == std::string_view::npos; }

    /// How many fields are given before the first that is not; nothing when a later one is given, or a part of one.
    template <std::size_t Count>
    bool CountGiven(const std::array<TField, Count>& fields, std::size_t& count) const {
        count = 0;
        while (count < Count && IsGiven(fields.at(count))) {
            ++count;
        }
        for (std::size_t i = count; i < Count; ++i) {
            if (!IsBlank(fields.at(i))) {
                return false;
            }
        }
        return count == Count || IsBlank(kMicroseconds);
    }

    /// The digits of the second's fraction, without zeros at their end.
    std::string_view Fraction() const {
        const std::string_view digits = At(kMicroseconds);
        const std::string_view given = digits.substr(0, digits.find('*'));
        return given.substr(0, given.find_last_not_of('0') + 1);
    }

  private:
    bool IsBlank(const TField& field) const { return At(field).find_first_not_of('*') == std::string_view::npos; }

    std::string_view text_;
    bool hasAsterisks_;
};

/// The text of a timestamp, of which there is never more.
class StampText {
  public:
    void Add(std::string_view part) { end_ = std::copy(part.begin(), part.end(), end_); }
    void Add(char letter) { *end_++ = letter; }
    void AddTwoDigits(std::uint64_t number) {
        Add(static_cast<char>('0' + number / 10));
        Add(static_cast<char>('0' + number % 10));
    }

    std::string_view Text() const { return {text_.data(), static_cast<std::size_t>(end_ - text_.data())}; }

  private:
    std::array<char, 40> text_; // `2026-11-21 08:39:00.123456 +16:39`
    char* end_ = text_.data();
};

void AppendTimestamp(const Parts& parts, std::size_t given, char sign, std::string& text) {
    constexpr std::array<char, 6> kBefore{'\0', '-', '-', ' ', ':', ':'};
    StampText stamp;
    for (std::size_t i = 0; i < given; ++i) {
        if (i != 0) {
            stamp.Add(kBefore[i]);
        }
        stamp.Add(parts.At(kStampFields[i]));
    }
    if (given == kStampFields.size() && !parts.Fraction().empty()) {
        stamp.Add('.');
        stamp.Add(parts.Fraction());
    }
    if (given > 3 && parts.IsGiven(kOffset)) {
        const std::uint64_t minutes = NumberOf(parts.At(kOffset));
        stamp.Add(' ');
        stamp.Add(sign);
        stamp.AddTwoDigits(minutes / 60);
        stamp.Add(':');
        stamp.AddTwoDigits(minutes % 60);
    }
    text += stamp.Text();
}

/// `2 d 03:04` and the like, where not all is given.
std::string PartOfSpan(const Parts& parts, std::size_t given) {
    const std::uint64_t days = NumberOf(parts.At(kSpanFields[0]));
    std::string text = days == 0 && given > 1 ? "" : std::to_string(days) + " d";
    if (given > 1) {
        text.append(text.empty() ? "" : " ").append(parts.At(kSpanFields[1]));
        text += given > 2 ? ':' + std::string(parts.At(kSpanFields[2])) : " h";
    }
    return text;
}

/// Every digit that is given counts here: an interval is not a measurement.
std::string WholeSpan(const Parts& parts) {
    const std::uint64_t days = NumberOf(parts.At(kSpanFields[0]));
    const auto hours = static_cast<unsigned>(NumberOf(parts.At(kSpanFields[1])));
    const auto minutes = static_cast<unsigned>(NumberOf(parts.At(kSpanFields[2])));
    const auto seconds = static_cast<unsigned>(NumberOf(parts.At(kSpanFields[3])));
    const std::string fraction(parts.Fraction());
    if (fraction.empty()) {
        const std::uint64_t all = ((days * 24 + hours) * 60 + minutes) * 60 + seconds;
        return SpanText(*Fraction::Make(ExactNumber::Of(all), {1, 1, 0, 0, false}));
    }
    return days + hours + minutes == 0 ? std::to_string(seconds) + '.' + fraction + " s"
                                       : ClockText(days, hours, minutes, seconds, fraction);
}

} // namespace

void AppendDateTimeText(std::string_view characters, std::string& text) {
    if (characters.size() != kLength) {
        text += characters;
        return;
    }
    const Parts parts(characters);
    const bool isInterval = characters[kSign] == ':';
    std::size_t given = 0;
    const bool makesSense = isInterval ? parts.CountGiven(kSpanFields, given) : parts.CountGiven(kStampFields, given);
    if (!makesSense || given == 0) {
        text += characters;
    } else if (!isInterval) {
        AppendTimestamp(parts, given, characters[kSign], text);
    } else {
        text += given == kSpanFields.size() ? WholeSpan(parts) : PartOfSpan(parts, given);
    }
}

} // namespace NQORVYX20
