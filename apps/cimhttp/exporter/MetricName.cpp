#include "exporter/MetricName.h"

#include "text/Ascii.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace cimhttp {

namespace {

constexpr bool IsUpper(char letter) { return letter >= 'A' && letter <= 'Z'; }
constexpr bool IsLower(char letter) { return letter >= 'a' && letter <= 'z'; }

/// Whether a word begins at an index: after a small letter or a digit, or as the last capital of several.
bool BeginsWord(const std::string& name, std::size_t index) {
    if (index == 0 || !IsUpper(name[index])) {
        return false;
    }
    const char before = name[index - 1];
    return IsLower(before) || IsAsciiDigit(before) ||
           (IsUpper(before) && index + 1 < name.size() && IsLower(name[index + 1]));
}

bool IsName(const std::string& text, bool mayHaveColons) {
    const auto isPart = [&](char c) {
        return IsAsciiLetter(c) || IsAsciiDigit(c) || c == '_' || (mayHaveColons && c == ':');
    };
    return !text.empty() && !IsAsciiDigit(text.front()) && std::all_of(text.begin(), text.end(), isPart);
}

struct Named {
    std::string_view symbol;
    std::string_view name;
    long double per;
};

constexpr long double kBits = 8;
constexpr long double kPercent = 100;

/// Base units of texts, and what Prometheus calls them.
constexpr std::array kUnits{Named{"B", "bytes", 1},        Named{"bit", "bytes", kBits}, Named{"s", "seconds", 1},
                            Named{"%", "ratio", kPercent}, Named{"°C", "celsius", 1},    Named{"°F", "fahrenheit", 1},
                            Named{"K", "kelvin", 1},       Named{"Hz", "hertz", 1},      Named{"W", "watts", 1},
                            Named{"V", "volts", 1},        Named{"A", "amperes", 1},     Named{"J", "joules", 1},
                            Named{"VA", "voltamperes", 1}, Named{"var", "vars", 1},      Named{"Pa", "pascals", 1},
                            Named{"bar", "bars", 1},       Named{"Ω", "ohms", 1},        Named{"m", "meters", 1},
                            Named{"g", "grams", 1},        Named{"lx", "lux", 1},        Named{"cd", "candelas", 1}};

constexpr std::string_view kPerSecond = "/s";

} // namespace

std::string SnakeCase(const std::string& name) {
    std::string snake;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (BeginsWord(name, i) && snake.back() != '_') {
            snake += '_';
        }
        const char letter = AsciiLower(name[i]);
        const bool isKept = IsLower(letter) || IsAsciiDigit(letter);
        if (isKept || snake.empty() || snake.back() != '_') {
            snake += isKept ? letter : '_';
        }
    }
    return !snake.empty() && IsAsciiDigit(snake.front()) ? '_' + snake : snake;
}

bool IsMetricName(const std::string& text) { return IsName(text, true); }

bool IsLabelName(const std::string& text) {
    return IsName(text, false) && text.compare(0, 2, "__") != 0 && text != kStateLabel && text != kIndexLabel;
}

MetricUnit MetricUnit::Of(const UnitScale& unit) {
    std::string symbol = unit.base;
    const bool isRate = symbol.size() > kPerSecond.size() &&
                        symbol.compare(symbol.size() - kPerSecond.size(), kPerSecond.size(), kPerSecond) == 0;
    if (isRate) {
        symbol.resize(symbol.size() - kPerSecond.size());
    }
    const std::string rate = isRate ? "_per_second" : "";
    for (const Named& named : kUnits) {
        if (symbol == named.symbol) {
            return {std::string(named.name) + rate, unit.times, unit.per * named.per};
        }
    }
    std::string suffix = SnakeCase(symbol);
    suffix.erase(0, suffix.find_first_not_of('_'));
    suffix.erase(suffix.find_last_not_of('_') + 1);
    return {suffix.empty() ? suffix : suffix + rate, unit.times, unit.per};
}

double MetricUnit::InBase(const Quantity& quantity) const { return static_cast<double>(quantity.number * times / per); }

std::string MetricName(const std::string& stem, const MetricUnit& unit, bool isCounter) {
    std::string name = stem;
    const std::string suffix = unit.suffix.empty() ? "" : '_' + unit.suffix;
    const bool hasSuffix =
        name.size() > suffix.size() && name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0;
    name += hasSuffix ? "" : suffix;
    return isCounter ? name + "_total" : name;
}

} // namespace cimhttp
