#pragma once

#include "display/Scale.h"

#include <cstdint>
#include <optional>
#include <string>

namespace NQORVYX20 {

/// A number of CIM without loss: `mantissa * 10^ten`, negative or not.
struct ExactNumber {
    std::uint64_t mantissa = 0;
    int ten = 0;
    bool isNegative = false;

    static ExactNumber Of(std::uint64_t number) { return {number, 0, false}; }
    static ExactNumber Of(std::int64_t number) {
        const auto bits = static_cast<std::uint64_t>(number);
        return {number < 0 ? 0 - bits : bits, 0, number < 0};
    }

    /// The number that a decimal text such as `-2.5e-07` says. Nothing for other texts, such as `inf`, and for more
    /// digits than fit.
    static std::optional<ExactNumber> Read(const std::string& text);
};

/// A fraction without sign, exact. Its numbers have room for every number of CIM in every unit that is in use.
class Fraction {
  public:
    __extension__ using TNumber = unsigned __int128;

    /// The number's size times the scale's; nothing where that does not fit.
    static std::optional<Fraction> Make(const ExactNumber& number, const Scale& scale);

    bool IsZero() const { return above_ == 0; }

    /// Whether it is at least that many.
    bool IsAtLeast(TNumber number) const { return Floor() >= number; }

    /// Nothing where the result does not fit.
    std::optional<Fraction> Times(TNumber number) const;
    std::optional<Fraction> By(TNumber number) const;

    /// The whole number below it, or that it is.
    TNumber Floor() const { return Quotient(above_, below_); }

    /// The whole number that it is, if it is one.
    std::optional<TNumber> Whole() const {
        const TNumber floor = Floor();
        return floor * below_ == above_ ? std::optional(floor) : std::nullopt;
    }

    /// Rounded to the nearest whole number, halves up.
    TNumber Rounded() const;

    /// Divides, faster where 64 bits will do, as nearly always.
    static TNumber Quotient(TNumber above, TNumber below) {
        return ((above | below) >> 64U) == 0 ? static_cast<std::uint64_t>(above) / static_cast<std::uint64_t>(below)
                                             : above / below;
    }

  private:
    Fraction(TNumber above, TNumber below) : above_(above), below_(below) {}

    TNumber above_;
    TNumber below_;
};

} // namespace NQORVYX20
