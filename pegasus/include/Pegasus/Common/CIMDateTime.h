#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus {
inline namespace bundled {

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
    Boolean isTimeStamp() const noexcept { return !isInterval(); }

    /// Points in time are equal when they are the same moment, whatever their offsets from UTC; intervals when they are
    /// as long. Where one of them has asterisks, only the digits that both have are compared.
    Boolean equal(const CIMDateTime& other) const;

    /// As the constructor.
    void set(const String& text) { *this = CIMDateTime(text); }
    /// Makes it an interval. The first `numberSignificantMicrosecondDigits` digits of the microseconds are known, the
    /// others become asterisks. Throws DateTimeOutOfRangeException.
    void setInterval(Uint32 days, Uint32 hours, Uint32 minutes, Uint32 seconds, Uint32 microseconds,
                     Uint32 numberSignificantMicrosecondDigits);
    /// Makes it a point in time, in local time that is `utcOffset` minutes ahead of UTC. Throws
    /// DateTimeOutOfRangeException.
    void setTimeStamp(Uint32 year, Uint32 month, Uint32 day, Uint32 hours, Uint32 minutes, Uint32 seconds,
                      Uint32 microseconds, Uint32 numberSignificantMicrosecondDigits, Sint32 utcOffset);
    /// Makes it the zero interval.
    void clear() noexcept { *this = CIMDateTime(); }

    /// The length of an interval; for a point in time, the microseconds since the beginning of the year 0, in UTC.
    /// Fields with asterisks count as the least that they can be.
    Uint64 toMicroSeconds() const;
    /// The microseconds from `start` to `finish`. Throws InvalidDateTimeFormatException for a point in time and an
    /// interval.
    static Sint64 getDifference(CIMDateTime start, CIMDateTime finish);
    /// Now, with the offset of this machine's time zone.
    static CIMDateTime getCurrentDateTime();

    friend bool operator==(const CIMDateTime& a, const CIMDateTime& b) { return a.equal(b); }
    friend bool operator!=(const CIMDateTime& a, const CIMDateTime& b) { return !a.equal(b); }

  private:
    String text_; // empty for the zero interval
};

} // namespace bundled
} // namespace Pegasus
