#include "display/QuantityText.h"

#include "display/PrefixedText.h"
#include "display/SpanText.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace NQORVYX20 {

namespace {

std::string SizeText(const Fraction& size, const Unit& unit) {
    if (unit.steps == Unit::Steps::kTime) {
        return SpanText(size);
    }
    if (unit.steps == Unit::Steps::kNone || size.IsZero()) {
        const std::string text = PlainText(size);
        return WithUnit(text, {}, text == "1" ? unit.singular : unit.symbol);
    }
    return PrefixedText(size, unit.steps == Unit::Steps::kBinary ? 1024 : 1000, unit.symbol);
}

std::string DigitsOf(const ExactNumber& number) {
    return std::to_string(number.mantissa) + (number.ten == 0 ? "" : "e" + std::to_string(number.ten));
}

std::string PowerText(unsigned base, int power) { return std::to_string(base) + '^' + std::to_string(power); }

/// A scale in figures: `0.01`, `250 × 10^-9`.
std::string ScaleText(const Scale& scale) {
    constexpr std::array<const char*, 3> kParts{"0.1", "0.01", "0.001"};
    if (scale.IsPower() && scale.two == 0 && scale.ten < 0 && scale.ten >= -3) {
        return kParts.at(static_cast<std::size_t>(-scale.ten - 1));
    }
    std::string text = scale.factor == 1 ? "" : std::to_string(scale.factor);
    for (const std::string& part : {scale.ten == 0 ? std::string() : PowerText(10, scale.ten),
                                    scale.two == 0 ? std::string() : PowerText(2, scale.two)}) {
        text += (text.empty() || part.empty() ? "" : " × ") + part;
    }
    return scale.divisor == 1 ? text : (text.empty() ? "1" : text) + '/' + std::to_string(scale.divisor);
}

/// The prefix that says the same as the scale; false where there is none.
bool FindPrefix(const Unit& unit, std::string_view& prefix) {
    const Scale& scale = unit.scale;
    if (scale.IsOne()) {
        return true;
    }
    const bool isDecimal = unit.steps == Unit::Steps::kDecimal || unit.steps == Unit::Steps::kTime;
    if (!scale.IsPower() || (scale.ten != 0 && scale.two != 0)) {
        return false;
    }
    const int step = scale.two != 0 ? scale.two / 10 : std::abs(scale.ten) / 3;
    const auto place = static_cast<std::size_t>(std::abs(step));
    if (scale.two > 0 && scale.two % 10 == 0 && place < kBinaryPrefixes.size() && unit.steps == Unit::Steps::kBinary) {
        prefix = kBinaryPrefixes.at(place);
        return true;
    }
    if (!isDecimal || scale.two != 0 || scale.ten % 3 != 0) {
        return false;
    }
    const bool isThere = scale.ten > 0 ? place < kLargePrefixes.size() : place < kSmallPrefixes.size();
    if (isThere) {
        prefix = scale.ten > 0 ? kLargePrefixes.at(place) : kSmallPrefixes.at(place);
    }
    return isThere;
}

/// `min`, `h` and `d` for their lengths.
const char* FindTimeUnit(const Unit& unit) {
    constexpr std::array<std::pair<std::uint64_t, const char*>, 4> kUnits{
        {{60, "min"}, {3600, "h"}, {86400, "d"}, {604800, "weeks"}}};
    const bool isWhole = unit.steps == Unit::Steps::kTime && unit.scale.ten == 0 && unit.scale.two == 0;
    const auto* const found = std::find_if(kUnits.begin(), kUnits.end(), [&](const auto& entry) {
        return isWhole && unit.scale.divisor == 1 && entry.first == unit.scale.factor;
    });
    return found == kUnits.end() ? nullptr : found->second;
}

} // namespace

std::string QuantityText(const ExactNumber& number, const Unit& unit) {
    const bool isNegative = number.isNegative != unit.scale.isNegative && number.mantissa != 0;
    const std::string sign = isNegative ? "-" : "";
    const auto size = Fraction::Make(number, unit.scale);
    return size ? sign + SizeText(*size, unit) : UnscaledText((number.isNegative ? "-" : "") + DigitsOf(number), unit);
}

std::string UnscaledText(const std::string& digits, const Unit& unit) {
    const bool isNegative = !digits.empty() && digits.front() == '-';
    std::string number = digits;
    if (unit.scale.isNegative && digits != "0") {
        number = isNegative ? digits.substr(1) : '-' + digits;
    }
    if (const char* const time = FindTimeUnit(unit)) {
        return WithUnit(number, {}, time);
    }
    std::string_view prefix;
    if (FindPrefix(unit, prefix)) {
        return WithUnit(number, prefix, number == "1" ? unit.singular : unit.symbol);
    }
    return WithUnit(number + " × " + ScaleText(unit.scale), {}, unit.symbol);
}

} // namespace NQORVYX20
