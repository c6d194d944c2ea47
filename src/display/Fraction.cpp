#include "display/Fraction.h"

#include <charconv>

namespace NQORVYX20 {

namespace {

using TNumber = Fraction::TNumber;

/// Multiplies in place; false, changing nothing, where the product does not fit.
bool Multiply(TNumber& number, TNumber factor) {
    TNumber product = 0;
    if (__builtin_mul_overflow(number, factor, &product)) {
        return false;
    }
    number = product;
    return true;
}

/// Multiplies by a power of a base; false where the product does not fit.
bool Raise(TNumber& number, unsigned base, int power) {
    while (power > 0 && Multiply(number, base)) {
        --power;
    }
    return power <= 0;
}

} // namespace

std::optional<ExactNumber> ExactNumber::Read(const std::string& text) {
    ExactNumber number;
    std::string digits;
    int decimals = 0;
    std::size_t at = 0;
    number.isNegative = !text.empty() && text.front() == '-';
    at += number.isNegative ? 1 : 0;
    bool isBehindPoint = false;
    for (; at < text.size() && (text[at] == '.' || (text[at] >= '0' && text[at] <= '9')); ++at) {
        if (text[at] == '.') {
            isBehindPoint = true;
        } else {
            digits += text[at];
            decimals += isBehindPoint ? 1 : 0;
        }
    }
    const char* const end = text.data() + text.size();
    if (at < text.size() && text[at] == 'e') {
        at += at + 1 < text.size() && text[at + 1] == '+' ? 2 : 1;
        const auto parsed = std::from_chars(text.data() + at, end, number.ten);
        at = static_cast<std::size_t>(parsed.ptr - text.data());
    }
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), number.mantissa);
    if (digits.empty() || parsed.ec != std::errc() || at != text.size()) {
        return std::nullopt;
    }
    number.ten -= decimals;
    return number;
}

std::optional<Fraction> Fraction::Make(const ExactNumber& number, const Scale& scale) {
    TNumber above = number.mantissa;
    TNumber below = 1;
    if (above == 0) {
        return Fraction(0, 1);
    }
    const int ten = number.ten + scale.ten;
    const bool fits = Multiply(above, scale.factor) && Multiply(below, scale.divisor) && Raise(above, 10, ten) &&
                      Raise(below, 10, -ten) && Raise(above, 2, scale.two) && Raise(below, 2, -scale.two);
    return fits ? std::optional(Fraction(above, below)) : std::nullopt;
}

std::optional<Fraction> Fraction::Times(TNumber number) const {
    Fraction product = *this;
    return Multiply(product.above_, number) ? std::optional(product) : std::nullopt;
}

std::optional<Fraction> Fraction::By(TNumber number) const {
    Fraction quotient = *this;
    return Multiply(quotient.below_, number) ? std::optional(quotient) : std::nullopt;
}

Fraction::TNumber Fraction::Rounded() const {
    const TNumber floor = Floor();
    const TNumber rest = above_ - floor * below_;
    return floor + (rest >= below_ - rest && rest != 0 ? 1 : 0);
}

} // namespace NQORVYX20
