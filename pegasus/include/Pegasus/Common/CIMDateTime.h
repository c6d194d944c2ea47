#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus {

/// A point in time or an interval, kept as the 25 characters of DSP0004 5.2.4:
/// "yyyymmddhhmmss.mmmmmmsutc" or "ddddddddhhmmss.mmmmmm:000". Asterisks stand for fields that are not known.
class CIMDateTime {
  public:
    /// The zero interval.
    CIMDateTime() noexcept = default;
    /// Throws InvalidDateTimeFormatException for a text of another form, DateTimeOutOfRangeException for a field with
    /// an impossible number.
    CIMDateTime(const String& text);

    /// The 25 characters as they were given.
    const String& toString() const noexcept;
    Boolean isInterval() const noexcept;

    /// Points in time are equal when they are the same moment, whatever their offsets from UTC. Everything with
    /// asterisks, and intervals, when the texts are.
    Boolean equal(const CIMDateTime& other) const noexcept;

    friend bool operator==(const CIMDateTime& a, const CIMDateTime& b) noexcept { return a.equal(b); }
    friend bool operator!=(const CIMDateTime& a, const CIMDateTime& b) noexcept { return !a.equal(b); }

  private:
    String text_; // empty for the zero interval
};

} // namespace Pegasus
