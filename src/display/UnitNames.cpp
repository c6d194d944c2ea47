#include "display/UnitNames.h"

#include "convert/LetterCase.h"

#include <algorithm>
#include <array>
#include <utility>

namespace NQORVYX20 {

namespace {

constexpr bool kPrefixes = true;
constexpr bool kAlone = false;

/// The base units of DSP0004, and those that sensors have besides.
constexpr std::array kBaseUnits{
    BaseUnit{"ampere", "A", kPrefixes, 0, {}},
    BaseUnit{"bar", "bar", kPrefixes, 0, {}},
    BaseUnit{"becquerel", "Bq", kPrefixes, 0, {}},
    BaseUnit{"bit", "bit", kPrefixes, 0, {}},
    BaseUnit{"british thermal unit", "BTU", kAlone, 0, {}},
    BaseUnit{"byte", "B", kPrefixes, 0, {}},
    BaseUnit{"candela", "cd", kPrefixes, 0, {}},
    BaseUnit{"count", "count", kAlone, 0, {}},
    BaseUnit{"coulomb", "C", kPrefixes, 0, {}},
    BaseUnit{"cycle", "cycles", kAlone, 0, "cycle"},
    BaseUnit{"dataword", "words", kAlone, 0, "word"},
    BaseUnit{"day", "d", kAlone, 86400, {}},
    BaseUnit{"decibel", "dB", kAlone, 0, {}},
    BaseUnit{"decibel(a)", "dB(A)", kAlone, 0, {}},
    BaseUnit{"decibel(c)", "dB(C)", kAlone, 0, {}},
    BaseUnit{"decibel(m)", "dBm", kAlone, 0, {}},
    BaseUnit{"degree", "°", kAlone, 0, {}},
    BaseUnit{"degree celsius", "°C", kAlone, 0, {}},
    BaseUnit{"degree fahrenheit", "°F", kAlone, 0, {}},
    BaseUnit{"farad", "F", kPrefixes, 0, {}},
    BaseUnit{"fluid ounce", "fl oz", kAlone, 0, {}},
    BaseUnit{"foot", "ft", kAlone, 0, {}},
    BaseUnit{"gilbert", "Gb", kAlone, 0, {}},
    BaseUnit{"gauss", "G", kAlone, 0, {}},
    BaseUnit{"gram", "g", kPrefixes, 0, {}},
    BaseUnit{"gravity", "times gravity", kAlone, 0, {}},
    BaseUnit{"gray", "Gy", kPrefixes, 0, {}},
    BaseUnit{"henry", "H", kPrefixes, 0, {}},
    BaseUnit{"hertz", "Hz", kPrefixes, 0, {}},
    BaseUnit{"hour", "h", kAlone, 3600, {}},
    BaseUnit{"inch", "in", kAlone, 0, {}},
    BaseUnit{"joule", "J", kPrefixes, 0, {}},
    BaseUnit{"kelvin", "K", kAlone, 0, {}},
    BaseUnit{"liquid gallon", "gal", kAlone, 0, {}},
    BaseUnit{"liter", "L", kPrefixes, 0, {}},
    BaseUnit{"lumen", "lm", kPrefixes, 0, {}},
    BaseUnit{"lux", "lx", kPrefixes, 0, {}},
    BaseUnit{"meter", "m", kPrefixes, 0, {}},
    BaseUnit{"mil", "mil", kAlone, 0, {}},
    BaseUnit{"mile", "mi", kAlone, 0, {}},
    BaseUnit{"minute", "min", kAlone, 60, {}},
    BaseUnit{"month", "month", kAlone, 0, {}},
    BaseUnit{"mole", "mol", kPrefixes, 0, {}},
    BaseUnit{"msu", "MSU", kAlone, 0, {}},
    BaseUnit{"newton", "N", kPrefixes, 0, {}},
    BaseUnit{"nit", "cd/m²", kAlone, 0, {}},
    BaseUnit{"ohm", "Ω", kPrefixes, 0, {}},
    BaseUnit{"ounce", "oz", kAlone, 0, {}},
    BaseUnit{"packet", "packets", kAlone, 0, "packet"},
    BaseUnit{"pascal", "Pa", kPrefixes, 0, {}},
    BaseUnit{"percent", "%", kAlone, 0, {}},
    BaseUnit{"permille", "‰", kAlone, 0, {}},
    BaseUnit{"pixel", "px", kAlone, 0, {}},
    BaseUnit{"pound", "lb", kAlone, 0, {}},
    BaseUnit{"rack unit", "U", kAlone, 0, {}},
    BaseUnit{"ppm", "ppm", kAlone, 0, {}},
    BaseUnit{"radian", "rad", kPrefixes, 0, {}},
    BaseUnit{"revolution", "revolutions", kAlone, 0, "revolution"},
    BaseUnit{"roentgen", "R", kPrefixes, 0, {}},
    BaseUnit{"second", "s", kPrefixes, 1, {}},
    BaseUnit{"siemens", "S", kPrefixes, 0, {}},
    BaseUnit{"sievert", "Sv", kPrefixes, 0, {}},
    BaseUnit{"steradian", "sr", kPrefixes, 0, {}},
    BaseUnit{"tesla", "T", kPrefixes, 0, {}},
    BaseUnit{"ton", "t", kAlone, 0, {}},
    BaseUnit{"torr", "Torr", kAlone, 0, {}},
    BaseUnit{"volt", "V", kPrefixes, 0, {}},
    BaseUnit{"volt ampere", "VA", kPrefixes, 0, {}},
    BaseUnit{"volt ampere reactive", "var", kPrefixes, 0, {}},
    BaseUnit{"watt", "W", kPrefixes, 0, {}},
    BaseUnit{"weber", "Wb", kPrefixes, 0, {}},
    BaseUnit{"week", "weeks", kAlone, 604800, "week"},
    BaseUnit{"year", "year", kAlone, 0, {}},
    BaseUnit{"yard", "yd", kAlone, 0, {}},
};

/// People's words that are not a base unit's name with an s at the end.
constexpr std::array kWords{
    std::pair<std::string_view, std::string_view>{"amp", "ampere"},
    std::pair<std::string_view, std::string_view>{"btu", "british thermal unit"},
    std::pair<std::string_view, std::string_view>{"british-thermal-unit", "british thermal unit"},
    std::pair<std::string_view, std::string_view>{"celsius", "degree celsius"},
    std::pair<std::string_view, std::string_view>{"degree c", "degree celsius"},
    std::pair<std::string_view, std::string_view>{"degree f", "degree fahrenheit"},
    std::pair<std::string_view, std::string_view>{"degree k", "kelvin"},
    std::pair<std::string_view, std::string_view>{"degrees c", "degree celsius"},
    std::pair<std::string_view, std::string_view>{"degrees celsius", "degree celsius"},
    std::pair<std::string_view, std::string_view>{"degrees f", "degree fahrenheit"},
    std::pair<std::string_view, std::string_view>{"degrees fahrenheit", "degree fahrenheit"},
    std::pair<std::string_view, std::string_view>{"degrees k", "kelvin"},
    std::pair<std::string_view, std::string_view>{"degrees kelvin", "kelvin"},
    std::pair<std::string_view, std::string_view>{"fahrenheit", "degree fahrenheit"},
    std::pair<std::string_view, std::string_view>{"feet", "foot"},
    std::pair<std::string_view, std::string_view>{"henries", "henry"},
    std::pair<std::string_view, std::string_view>{"inches", "inch"},
    std::pair<std::string_view, std::string_view>{"litre", "liter"},
    std::pair<std::string_view, std::string_view>{"metre", "meter"},
    std::pair<std::string_view, std::string_view>{"percentage", "percent"},
    std::pair<std::string_view, std::string_view>{"sec", "second"},
};

template <typename Table, typename Name>
auto Find(const Table& table, std::string_view name, Name nameOf) {
    const auto found =
        std::find_if(table.begin(), table.end(), [&](const auto& entry) { return nameOf(entry) == name; });
    return found == table.end() ? nullptr : &*found;
}

const BaseUnit* FindWordAsItIs(std::string_view word) {
    if (const BaseUnit* const unit = FindBaseUnit(word)) {
        return unit;
    }
    const auto* const other = Find(kWords, word, [](const auto& entry) { return entry.first; });
    return other != nullptr ? FindBaseUnit(other->second) : nullptr;
}

bool IsBlank(char letter) { return letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n'; }

} // namespace

const BaseUnit* FindBaseUnit(std::string_view name) {
    return Find(kBaseUnits, name, [](const BaseUnit& unit) { return unit.name; });
}

const BaseUnit* FindUnitWord(std::string_view word) {
    const BaseUnit* const unit = FindWordAsItIs(word);
    const bool isPlural = unit == nullptr && word.size() > 2 && word.back() == 's';
    return isPlural ? FindWordAsItIs(word.substr(0, word.size() - 1)) : unit;
}

std::string Simplified(std::string_view text) {
    std::string simple;
    for (const char letter : text) {
        if (!IsBlank(letter)) {
            simple += ToLower(letter);
        } else if (!simple.empty() && simple.back() != ' ') {
            simple += ' ';
        }
    }
    if (!simple.empty() && simple.back() == ' ') {
        simple.pop_back();
    }
    return simple;
}

} // namespace NQORVYX20
