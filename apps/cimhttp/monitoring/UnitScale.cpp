#include "monitoring/UnitScale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace cimhttp {

namespace {

struct TimeUnit {
    std::string_view symbol;
    long double seconds;
};

constexpr std::array kTimeUnits{TimeUnit{"min", 60}, TimeUnit{"h", 3600}, TimeUnit{"d", 86400},
                                TimeUnit{"weeks", 604800}, TimeUnit{"week", 604800}};

/// Powers of 1000, or with an i of 1024.
constexpr std::array<std::string_view, 7> kGreater{"", "k", "M", "G", "T", "P", "E"};
constexpr std::array<std::string_view, 5> kSmaller{"", "m", "µ", "n", "p"};

/// Units that people write with prefixes; `/s` may follow.
constexpr std::array<std::string_view, 13> kPrefixed{"B", "bit", "s",   "Hz", "W",   "V", "A",
                                                     "J", "VA",  "var", "Pa", "bar", "Ω"};

bool BeginsWith(std::string_view text, std::string_view begin) { return text.substr(0, begin.size()) == begin; }

bool HasPrefixes(std::string_view symbol) {
    const std::string_view base = symbol.substr(0, symbol.find('/'));
    return std::find(kPrefixed.begin(), kPrefixed.end(), base) != kPrefixed.end();
}

/// Whether the symbol is this prefix before a unit that has prefixes, which `base` gets.
bool IsPrefixed(std::string_view symbol, std::string_view prefix, std::string& base) {
    if (prefix.empty() || !BeginsWith(symbol, prefix) || !HasPrefixes(symbol.substr(prefix.size()))) {
        return false;
    }
    base = symbol.substr(prefix.size());
    return true;
}

} // namespace

UnitScale UnitScale::Of(const std::string& symbol) {
    constexpr long double kDecimal = 1000;
    constexpr long double kBinary = 1024;
    for (const TimeUnit& unit : kTimeUnits) {
        if (symbol == unit.symbol) {
            return {"s", unit.seconds, 1};
        }
    }
    if (HasPrefixes(symbol)) {
        return {symbol, 1, 1};
    }
    std::string base;
    for (std::size_t step = 1; step < kGreater.size(); ++step) {
        const auto power = static_cast<int>(step);
        if (IsPrefixed(symbol, std::string(kGreater[step]) + "i", base)) {
            return {base, std::pow(kBinary, power), 1};
        }
        if (IsPrefixed(symbol, kGreater[step], base)) {
            return {base, std::pow(kDecimal, power), 1};
        }
    }
    for (std::size_t step = 1; step < kSmaller.size(); ++step) {
        if (IsPrefixed(symbol, kSmaller[step], base)) {
            return {base, 1, std::pow(kDecimal, static_cast<int>(step))};
        }
    }
    // K for k, and u for µ, which not every keyboard has
    if (IsPrefixed(symbol, "Ki", base)) {
        return {base, kBinary, 1};
    }
    if (IsPrefixed(symbol, "K", base)) {
        return {base, kDecimal, 1};
    }
    return IsPrefixed(symbol, "u", base) ? UnitScale{base, 1, kDecimal * kDecimal} : UnitScale{symbol, 1, 1};
}

} // namespace cimhttp
