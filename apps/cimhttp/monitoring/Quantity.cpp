#include "monitoring/Quantity.h"

#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "output/TypeText.h"
#include "text/ParsedText.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace cimhttp {

using namespace NQORVYX20;

namespace {

constexpr std::string_view kTimes = "× ";

std::optional<long double> FiniteIn(const std::string& text) {
    const auto number = NumberIn<long double>(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

/// The unit that follows a number in a text, a part of one (`× 0.01 °C`) as a whole number by which to divide. Nothing
/// for another factor.
std::optional<UnitScale> UnitIn(const std::string& text) {
    if (text.compare(0, kTimes.size(), kTimes) != 0) {
        return UnitScale::Of(text);
    }
    const std::string rest = text.substr(kTimes.size());
    const std::size_t end = rest.find(' ');
    const auto factor = FiniteIn(rest.substr(0, end));
    if (!factor || *factor <= 0 || end == std::string::npos) {
        return std::nullopt;
    }
    UnitScale unit = UnitScale::Of(rest.substr(end + 1));
    (*factor < 1 ? unit.per : unit.times) *= std::round(*factor < 1 ? 1 / *factor : *factor);
    return unit;
}

bool HasQualifier(const ICIMPropertyDecl& property, const char* name) {
    bool isFound = false;
    property.GetQualifier(name, isFound, TCIMContext());
    return isFound;
}

} // namespace

std::optional<Quantity> QuantityOf(const std::string& plain, const std::string& exact) {
    const auto number = FiniteIn(plain);
    if (!number) {
        return std::nullopt;
    }
    const std::size_t blank = exact.find(' ');
    const auto shown = FiniteIn(exact.substr(0, blank)); // of the other sign for a unit such as -1 dBm
    if (blank == std::string::npos || !shown) {
        return Quantity{*number, {}};
    }
    const std::string rest = exact.substr(blank + 1);
    const auto unit = UnitIn(rest);
    return unit ? Quantity{*shown, *unit} : Quantity{*shown, UnitScale{rest, 1, 1}};
}

bool HasNumbers(const ICIMPropertyDecl& property) {
    using Type = TCIMValue::TCIMType::ECIMType;
    const Type type = ElementType(property.GetType(TCIMContext()));
    return type >= Type::eCIMUint8 && type <= Type::eCIMReal64;
}

bool HasValueMap(const ICIMPropertyDecl& property) {
    return HasQualifier(property, "ValueMap") || HasQualifier(property, "Values") || HasQualifier(property, "BitMap") ||
           HasQualifier(property, "BitValues");
}

bool IsCounter(const ICIMPropertyDecl& property) {
    bool isFound = false;
    const auto counter = property.GetQualifier("Counter", isFound, TCIMContext());
    return isFound && counter->GetValue(TCIMContext()) == TCIMValue(true);
}

std::string NumberText(long double number) {
    constexpr int kPlaces = 9;
    constexpr std::size_t kLongest = 5000; // the greatest long double has 4933 digits
    std::array<char, kLongest> digits{};
    const int size = std::snprintf(digits.data(), digits.size(), "%.*Lf", kPlaces, number);
    std::string text(digits.data(), static_cast<std::size_t>(size));
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') {
        text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

} // namespace cimhttp
