#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace NQORVYX20 {

/// A CIM date-time: a timestamp `yyyymmddhhmmss.mmmmmmsutc` or an interval `ddddddddhhmmss.mmmmmm:000` (DSP0004 5.2.4).
/// Fields that are not significant hold asterisks; among the microseconds, the last digits may.
class TCIMDateTime {
  public:
    /// The interval of length zero.
    TCIMDateTime();

    /// Takes the 25 characters. Throws TVYXException eTypeMismatch when they are malformed or a field is out of range
    /// (a day is checked against its month; second 60 is a leap second, and only in a timestamp). Asterisks are
    /// accepted in any field, in the time zone too, since servers write them there.
    explicit TCIMDateTime(const std::string& text);

    /// Makes this an interval. Throws TVYXException eTypeMismatch, leaving the value as it was, when a field does not
    /// fit: days up to 99999999, hours up to 23, minutes and seconds up to 59, microseconds up to 999999.
    void Set(unsigned int days, unsigned short hours, unsigned short minutes, unsigned short seconds,
             unsigned int microseconds);

    bool IsInterval() const;

    /// The 25 characters.
    std::string ToString() const;
    std::string_view Characters() const { return {text_.data(), text_.size()}; }

    /// Text for people: `1 day 01:01:01` for an interval, `2026-11-21 08:39:00 +01:00` for a timestamp. Microseconds
    /// are shown only when there are any, asterisked fields are left out.
    std::string ToUIString() const;

    /// Compare the characters. Among timestamps of one time zone, and among intervals, that is the order of time.
    friend bool operator==(const TCIMDateTime& left, const TCIMDateTime& right) { return left.text_ == right.text_; }
    friend bool operator!=(const TCIMDateTime& left, const TCIMDateTime& right) { return left.text_ != right.text_; }
    friend bool operator<(const TCIMDateTime& left, const TCIMDateTime& right) { return left.text_ < right.text_; }

  private:
    static constexpr std::size_t kLength = 25;
    std::array<char, kLength> text_;
};

} // namespace NQORVYX20
