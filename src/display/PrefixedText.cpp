#include "display/PrefixedText.h"

#include "display/NumberText.h"

#include <array>

namespace NQORVYX20 {

namespace {

using TNumber = Fraction::TNumber;

constexpr TNumber kGreatestShort = 9999; // what has four digits
constexpr int kMostDecimals = 3;

/// The shortest decimal text of a number that has four digits at most; empty for others.
std::string ShortText(const Fraction& number) {
    Fraction shifted = number;
    for (int decimals = 0; decimals <= kMostDecimals && !shifted.IsAtLeast(kGreatestShort + 1); ++decimals) {
        if (const auto whole = shifted.Whole()) {
            return NumberText(*whole, decimals);
        }
        const auto next = shifted.Times(10);
        if (!next) {
            break;
        }
        shifted = *next;
    }
    return {};
}

/// A number that one decimal place would round to zero gets as many as it needs.
std::string RoundedText(const Fraction& number) {
    Fraction shifted = number;
    for (int decimals = 0;; ++decimals) {
        const auto next = shifted.Times(10);
        const TNumber rounded = next ? next->Rounded() : shifted.Rounded();
        if (!next || rounded != 0) {
            return NumberText(rounded, next ? decimals + 1 : decimals);
        }
        shifted = *next;
    }
}

/// A number with the largest prefix that leaves it at least 1.
class Prefixed {
  public:
    Prefixed(const Fraction& number, unsigned step, const std::string& symbol)
        : number_(number), step_(step), symbol_(symbol) {}

    std::string Text() const {
        if (!number_.IsAtLeast(1)) {
            return step_ == 1000 ? SmallText() : WithUnit(PlainText(number_), {}, symbol_);
        }
        std::size_t prefix = 0;
        TNumber size = 1;
        while (prefix + 1 < kLargePrefixes.size() && number_.IsAtLeast(size * step_)) {
            size *= step_;
            ++prefix;
        }
        return LargeText(prefix, size);
    }

  private:
    const std::string_view& Prefix(std::size_t prefix) const {
        return (step_ == 1024 ? kBinaryPrefixes : kLargePrefixes).at(prefix);
    }

    std::string LargeText(std::size_t prefix, TNumber size) const {
        const std::size_t largest = prefix;
        for (TNumber smaller = size;; smaller /= step_, --prefix) {
            const auto part = number_.By(smaller);
            const std::string text = part ? ShortText(*part) : std::string();
            if (!text.empty()) {
                return WithUnit(text, Prefix(prefix), symbol_);
            }
            if (prefix == 0 || step_ == 1000) { // with smaller prefixes the digits are the same
                break;
            }
        }
        return RoundedWith(largest, size);
    }

    /// Where rounding reaches the next prefix, that is the one.
    std::string RoundedWith(std::size_t prefix, TNumber size) const {
        const auto tenths = number_.By(size)->Times(10);
        if (!tenths) {
            return WithUnit(NumberText(number_.By(size)->Rounded(), 0), Prefix(prefix), symbol_);
        }
        const bool isNext = tenths->Rounded() >= step_ * 10 && prefix + 1 < kLargePrefixes.size();
        return isNext ? WithUnit("1.0", Prefix(prefix + 1), symbol_)
                      : WithUnit(NumberText(tenths->Rounded(), 1), Prefix(prefix), symbol_);
    }

    std::string SmallText() const {
        Fraction larger = number_;
        std::size_t prefix = 0;
        while (prefix + 1 < kSmallPrefixes.size() && !larger.IsAtLeast(1)) {
            const auto next = larger.Times(1000);
            if (!next) {
                break;
            }
            larger = *next;
            ++prefix;
        }
        const std::string text = ShortText(larger);
        return WithUnit(text.empty() ? RoundedText(larger) : text, kSmallPrefixes.at(prefix), symbol_);
    }

    const Fraction& number_;
    const TNumber step_;
    const std::string& symbol_;
};

} // namespace

std::string WithUnit(std::string number, std::string_view prefix, const std::string& symbol) {
    if (!symbol.empty()) {
        number += ' ';
        number += prefix;
        number += symbol;
    }
    return number;
}

std::string PlainText(const Fraction& number) {
    if (const auto whole = number.Whole()) {
        return NumberText(*whole, 0);
    }
    const std::string text = ShortText(number);
    return text.empty() ? RoundedText(number) : text;
}

std::string PrefixedText(const Fraction& number, unsigned step, const std::string& symbol) {
    return Prefixed(number, step, symbol).Text();
}

} // namespace NQORVYX20
