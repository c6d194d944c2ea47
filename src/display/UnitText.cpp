#include "display/UnitText.h"

#include "display/UnitBuilder.h"

#include <array>
#include <charconv>
#include <string>
#include <utility>

namespace NQORVYX20 {

namespace {

struct TPower {
    std::string_view text;
    int power; ///< of ten
};

constexpr std::array kPrefixes{TPower{"exa", 18},   TPower{"peta", 15},  TPower{"tera", 12}, TPower{"giga", 9},
                               TPower{"mega", 6},   TPower{"kilo", 3},   TPower{"deci", -1}, TPower{"centi", -2},
                               TPower{"milli", -3}, TPower{"micro", -6}, TPower{"nano", -9}, TPower{"pico", -12}};

constexpr std::array kFractions{
    TPower{"tenths of ", -1}, TPower{"hundredths of ", -2}, TPower{"thousandths of ", -3}, TPower{"millionths of ", -6},
    TPower{"tenth of ", -1},  TPower{"hundredth of ", -2},  TPower{"thousandth of ", -3},  TPower{"millionth of ", -6},
    TPower{"10ths of ", -1},  TPower{"100ths of ", -2},     TPower{"1000ths of ", -3}};

/// Prefixes of symbols. Only K and k mean the same.
constexpr std::array kShortPrefixes{TPower{"E", 18}, TPower{"P", 15}, TPower{"T", 12}, TPower{"G", 9},
                                    TPower{"M", 6},  TPower{"K", 3},  TPower{"k", 3},  TPower{"m", -3},
                                    TPower{"µ", -6}, TPower{"u", -6}, TPower{"n", -9}, TPower{"p", -12}};

struct TSymbol {
    std::string_view text;
    std::string_view above; ///< names of base units
    std::string_view below;
};

constexpr std::array kSymbols{TSymbol{"B", "byte", ""},
                              TSymbol{"B/s", "byte", "second"},
                              TSymbol{"Bps", "byte", "second"},
                              TSymbol{"bit/s", "bit", "second"},
                              TSymbol{"b/s", "bit", "second"},
                              TSymbol{"bps", "bit", "second"},
                              TSymbol{"Hz", "hertz", ""},
                              TSymbol{"V", "volt", ""},
                              TSymbol{"A", "ampere", ""},
                              TSymbol{"W", "watt", ""},
                              TSymbol{"VA", "volt ampere", ""},
                              TSymbol{"J", "joule", ""},
                              TSymbol{"Pa", "pascal", ""},
                              TSymbol{"s", "second", ""},
                              TSymbol{"°C", "degree celsius", ""},
                              TSymbol{"°F", "degree fahrenheit", ""},
                              TSymbol{"%", "percent", ""},
                              TSymbol{"dB", "decibel", ""},
                              TSymbol{"dBm", "decibel(m)", ""},
                              TSymbol{"RPM", "revolution", "minute"},
                              TSymbol{"rpm", "revolution", "minute"},
                              TSymbol{"Us", "rack unit", ""},
                              TSymbol{"U", "rack unit", ""}};

bool TakePrefix(std::string_view& text, std::string_view prefix) {
    const bool isThere = text.size() > prefix.size() && text.substr(0, prefix.size()) == prefix;
    text.remove_prefix(isThere ? prefix.size() : 0);
    return isThere;
}

/// Takes one of the prefixes off the front; the power of ten that it means, 0 without one.
template <typename Prefixes>
int TakePower(std::string_view& text, const Prefixes& prefixes) {
    for (const TPower& prefix : prefixes) {
        if (TakePrefix(text, prefix.text)) {
            return prefix.power;
        }
    }
    return 0;
}

/// A thousand bytes are 1024 where people count sizes; rates and all smaller than one go by ten.
void ApplyPrefix(Scale& scale, int power, bool isSize) {
    if (isSize && power > 0) {
        scale.two += power / 3 * 10;
    } else {
        scale.ten += power;
    }
}

class SymbolParser {
  public:
    static std::optional<Unit> Parse(std::string_view text) {
        if (auto unit = Make(text, 0)) {
            return unit;
        }
        const int power = TakePower(text, kShortPrefixes);
        return power == 0 ? std::nullopt : Make(text, power);
    }

  private:
    static std::optional<Unit> Make(std::string_view text, int power) {
        for (const TSymbol& symbol : kSymbols) {
            if (symbol.text == text) {
                return Make(symbol, power);
            }
        }
        return std::nullopt;
    }

    static std::optional<Unit> Make(const TSymbol& symbol, int power) {
        const BaseUnit& above = *FindBaseUnit(symbol.above);
        if (power != 0 && !above.hasPrefixes) {
            return std::nullopt;
        }
        UnitBuilder unit;
        unit.Multiply(above);
        if (!symbol.below.empty()) {
            unit.Divide(*FindBaseUnit(symbol.below));
        }
        ApplyPrefix(unit.GetScale(), power, symbol.above == "byte" && symbol.below.empty());
        return unit.Build();
    }
};

/// A word with a unit in it that is none of the base units.
struct TProduct {
    std::string_view word;
    std::string_view first;
    std::string_view second;
};
constexpr std::array kProducts{TProduct{"watthour", "watt", "hour"},       TProduct{"watthours", "watt", "hour"},
                               TProduct{"watt hours", "watt", "hour"},     TProduct{"watt hour", "watt", "hour"},
                               TProduct{"amp hours", "ampere", "hour"},    TProduct{"amphours", "ampere", "hour"},
                               TProduct{"ampere hours", "ampere", "hour"}, TProduct{"volt amps", "volt", "ampere"},
                               TProduct{"square meters", "meter", "meter"}};

class WordParser {
  public:
    /// `kilobits per second`, simplified.
    std::optional<Unit> Parse(std::string_view text) {
        constexpr std::string_view kPer = " per ";
        const std::size_t per = text.find(kPer);
        const bool hasBelow = per != std::string_view::npos;
        const bool isKnown = hasBelow
                                 ? TakeAbove(text.substr(0, per), false) && TakeBelow(text.substr(per + kPer.size()))
                                 : TakeAbove(text, true);
        return isKnown ? unit_.Build() : std::nullopt;
    }

    Scale& GetScale() { return unit_.GetScale(); }

  private:
    bool TakeAbove(std::string_view word, bool isAlone) {
        if (Multiply(word)) {
            return true;
        }
        const int power = TakePower(word, kPrefixes);
        word.remove_prefix(!word.empty() && (word.front() == ' ' || word.front() == '-') ? 1 : 0);
        const BaseUnit* const unit = FindUnitWord(word);
        if (power == 0 || (unit != nullptr && !unit->hasPrefixes) || !Multiply(word)) {
            return false;
        }
        ApplyPrefix(unit_.GetScale(), power, isAlone && unit != nullptr && unit->name == "byte");
        return true;
    }

    bool Multiply(std::string_view word) {
        if (const BaseUnit* const unit = FindUnitWord(word)) {
            unit_.Multiply(*unit);
            return true;
        }
        for (const TProduct& product : kProducts) {
            if (product.word == word) {
                unit_.Multiply(*FindBaseUnit(product.first));
                unit_.Multiply(*FindBaseUnit(product.second));
                return true;
            }
        }
        return false;
    }

    bool TakeBelow(std::string_view word) {
        const BaseUnit* const unit = FindUnitWord(word);
        if (unit != nullptr) {
            unit_.Divide(*unit);
        }
        return unit != nullptr;
    }

    UnitBuilder unit_;
};

/// Phrases that no rule would make of their words.
std::optional<Unit> ParsePhrase(std::string_view text) {
    if (text == "thousandths") {
        return Unit{"", "", {1, 1, -3, 0, false}, Unit::Steps::kNone};
    }
    if (text == "per thousand packets") {
        return Unit{"per 1000 packets", "per 1000 packets", {}, Unit::Steps::kNone};
    }
    if (text == "amps at 120 volts") {
        return Unit{"A at 120 V", "A at 120 V", {}, Unit::Steps::kNone};
    }
    return std::nullopt;
}

/// Takes the number off the front of `250 nanoseconds`; 1 without one, nothing for one that is too large.
std::optional<std::uint64_t> TakeFactor(std::string_view& text) {
    constexpr std::uint64_t kGreatestFactor = 1'000'000'000;
    std::uint64_t factor = 1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), factor);
    const auto length = static_cast<std::size_t>(end - text.data());
    if (length == 0) {
        return 1;
    }
    if (error != std::errc() || factor == 0 || factor > kGreatestFactor || length >= text.size() ||
        text[length] != ' ') {
        return std::nullopt;
    }
    text.remove_prefix(length + 1);
    return factor;
}

std::string_view WithoutBlanks(std::string_view text) {
    constexpr const char* kBlanks = " \t\r\n";
    const auto begin = text.find_first_not_of(kBlanks);
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

} // namespace

std::optional<Unit> ParseUnitText(std::string_view text) {
    text = WithoutBlanks(text);
    const bool isNegative = TakePrefix(text, "-");
    auto unit = SymbolParser::Parse(text);
    if (!unit) {
        const std::string simple = Simplified(text);
        std::string_view rest = simple;
        WordParser words;
        words.GetScale().ten = TakePower(rest, kFractions);
        const auto factor = TakeFactor(rest);
        words.GetScale().factor = factor.value_or(1);
        unit = !factor ? std::nullopt : rest == simple ? ParsePhrase(rest) : std::nullopt;
        unit = unit || !factor ? unit : words.Parse(rest);
    }
    if (unit) {
        unit->scale.isNegative = isNegative;
    }
    return unit;
}

} // namespace NQORVYX20
