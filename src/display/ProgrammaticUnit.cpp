#include "display/ProgrammaticUnit.h"

#include "display/UnitBuilder.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string>

namespace NQORVYX20 {

namespace {

constexpr std::uint64_t kGreatestFactor = 1'000'000'000;
constexpr int kGreatestPowerOfTen = 24;
constexpr int kGreatestPowerOfTwo = 60;

/// A whole number that is all of the text.
template <typename Number>
std::optional<Number> WholeNumber(std::string_view text) {
    text.remove_prefix(!text.empty() && text.front() == '+' ? 1 : 0);
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isAll = error == std::errc() && end == text.data() + text.size();
    return isAll ? std::optional(number) : std::nullopt;
}

std::string_view Trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

bool IsWithinBounds(const Scale& scale) {
    return scale.factor <= kGreatestFactor && scale.divisor <= kGreatestFactor && scale.factor != 0 &&
           scale.divisor != 0 && std::abs(scale.ten) <= kGreatestPowerOfTen &&
           std::abs(scale.two) <= kGreatestPowerOfTwo;
}

/// Takes one term after the other, as long as they make sense.
class Parser {
  public:
    /// False for what is no unit, power or number.
    bool Take(std::string_view term, bool isDivided) {
        if (const BaseUnit* const unit = FindBaseUnit(term)) {
            isDivided ? unit_.Divide(*unit) : unit_.Multiply(*unit);
            return true;
        }
        const auto caret = term.find('^');
        const bool isTaken = caret == std::string_view::npos ? TakeNumber(term, isDivided)
                                                             : TakePower(Trimmed(term.substr(0, caret)),
                                                                         Trimmed(term.substr(caret + 1)), isDivided);
        return isTaken && IsWithinBounds(unit_.GetScale());
    }

    std::optional<Unit> Result() const { return unit_.Build(); }

  private:
    bool TakePower(std::string_view base, std::string_view exponent, bool isDivided) {
        const auto number = WholeNumber<int>(exponent);
        if (!number || std::abs(*number) > kGreatestPowerOfTwo || (base != "10" && base != "2")) {
            return false;
        }
        (base == "10" ? unit_.GetScale().ten : unit_.GetScale().two) += isDivided ? -*number : *number;
        return true;
    }

    /// `250`, `-1` or `2.5`.
    bool TakeNumber(std::string_view term, bool isDivided) {
        const bool isNegative = !term.empty() && term.front() == '-';
        std::string digits(term.substr(isNegative ? 1 : 0));
        const auto point = digits.find('.');
        const int decimals = point == std::string::npos ? 0 : static_cast<int>(digits.size() - point - 1);
        if (point != std::string::npos) {
            digits.erase(point, 1);
        }
        const auto number = WholeNumber<std::uint64_t>(digits);
        if (!number || *number > kGreatestFactor || digits.front() == '+') {
            return false;
        }
        Scale& scale = unit_.GetScale();
        (isDivided ? scale.divisor : scale.factor) *= *number;
        scale.ten += isDivided ? decimals : -decimals;
        scale.isNegative = scale.isNegative != isNegative;
        return true;
    }

    UnitBuilder unit_;
};

} // namespace

std::optional<Unit> ParseProgrammaticUnit(std::string_view text) {
    const std::string simple = Simplified(text);
    Parser parser;
    bool isDivided = false;
    for (std::size_t begin = 0; begin <= simple.size();) {
        const std::size_t end = std::min(simple.find_first_of("*/", begin), simple.size());
        if (!parser.Take(Trimmed(std::string_view(simple).substr(begin, end - begin)), isDivided)) {
            return std::nullopt;
        }
        isDivided = end < simple.size() && simple[end] == '/';
        begin = end + 1;
    }
    return parser.Result();
}

} // namespace NQORVYX20
