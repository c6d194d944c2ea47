#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus {

class Uint32Arg {
  public:
    Uint32Arg();
    explicit Uint32Arg(Uint32 value);

    void setValue(Uint32 value);
    void setNullValue();
    Boolean isNull() const;
    Uint32 getValue() const;
    Boolean equal(const Uint32Arg& other) const;
    String toString() const;

  private:
    Uint32 value_;
    Boolean null_;
};

class Uint64Arg {
  public:
    Uint64Arg();
    explicit Uint64Arg(Uint64 value);

    void setValue(Uint64 value);
    void setNullValue();
    Boolean isNull() const;
    Uint64 getValue() const;
    Boolean equal(const Uint64Arg& other) const;
    String toString() const;

  private:
    Uint64 value_;
    Boolean null_;
};

} // namespace Pegasus
