#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus {

class CIMDateTime {
  public:
    CIMDateTime();
    CIMDateTime(const String& text);
    CIMDateTime(const CIMDateTime& other);
    ~CIMDateTime();
    CIMDateTime& operator=(const CIMDateTime& other);

    String toString() const;
    Boolean isInterval() const;
    Boolean isTimeStamp() const;
    Boolean equal(const CIMDateTime& other) const;
    void set(const String& text);
    void setInterval(Uint32 days, Uint32 hours, Uint32 minutes, Uint32 seconds, Uint32 microseconds,
                     Uint32 numberSignificantMicrosecondDigits);
    void setTimeStamp(Uint32 year, Uint32 month, Uint32 day, Uint32 hours, Uint32 minutes, Uint32 seconds,
                      Uint32 microseconds, Uint32 numberSignificantMicrosecondDigits, Sint32 utcOffset);
    void clear();
    Uint64 toMicroSeconds() const;
    static Sint64 getDifference(CIMDateTime start, CIMDateTime finish);
    static CIMDateTime getCurrentDateTime();

  private:
    void* rep_;
};

Boolean operator==(const CIMDateTime& a, const CIMDateTime& b);

} // namespace Pegasus
