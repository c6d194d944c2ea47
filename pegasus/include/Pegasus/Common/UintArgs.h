#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

#include <string>
#include <string_view>

namespace Pegasus {
inline namespace bundled {

namespace detail {

/// What Uint32Arg and Uint64Arg have in common.
template <typename Number>
class NumberArg {
  public:
    /// Null.
    NumberArg() noexcept = default;
    NumberArg(Number value) noexcept : value_(value), null_(false) {}

    void setValue(Number value) noexcept {
        value_ = value;
        null_ = false;
    }
    void setNullValue() noexcept { *this = NumberArg(); }

    Boolean isNull() const noexcept { return null_; }
    /// 0 for null.
    Number getValue() const noexcept { return value_; }

    /// Null equals nothing but null.
    Boolean equal(const NumberArg& other) const noexcept { return null_ == other.null_ && value_ == other.value_; }

    /// In base 10; "NULL" for null.
    String toString() const { return String(std::string_view(null_ ? "NULL" : std::to_string(value_))); }

    friend Boolean operator==(const NumberArg& left, const NumberArg& right) noexcept { return left.equal(right); }
    friend Boolean operator!=(const NumberArg& left, const NumberArg& right) noexcept { return !left.equal(right); }

  private:
    Number value_ = 0;
    Boolean null_ = true;
};

} // namespace detail

/// A parameter that is a number or null.
class Uint32Arg : public detail::NumberArg<Uint32> {
  public:
    using NumberArg::NumberArg;
};

class Uint64Arg : public detail::NumberArg<Uint64> {
  public:
    using NumberArg::NumberArg;
};

} // namespace bundled
} // namespace Pegasus
