#include "display/SensorUnits.h"

#include "display/ProgrammaticUnit.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace NQORVYX20 {

namespace {

/// Sorted.
constexpr std::array<std::string_view, 15> kReadings{
    "currentreading", "hysteresis",  "lowerthresholdcritical", "lowerthresholdfatal", "lowerthresholdnoncritical",
    "maxreadable",    "minreadable", "nominalreading",         "normalmax",           "normalmin",
    "resolution",     "tolerance",   "upperthresholdcritical", "upperthresholdfatal", "upperthresholdnoncritical"};

/// By the numbers of BaseUnits, as programmatic units; empty for what none of them is.
constexpr std::array<std::string_view, 67> kUnitTexts{"",
                                                      "",
                                                      "degree celsius",
                                                      "degree fahrenheit",
                                                      "kelvin",
                                                      "volt",
                                                      "ampere",
                                                      "watt",
                                                      "joule",
                                                      "coulomb",
                                                      "volt ampere",
                                                      "nit",
                                                      "lumen",
                                                      "lux",
                                                      "candela",
                                                      "pascal * 10^3",
                                                      "pound / inch / inch",
                                                      "newton",
                                                      "foot * foot * foot / minute",
                                                      "revolution / minute",
                                                      "hertz",
                                                      "second",
                                                      "minute",
                                                      "hour",
                                                      "day",
                                                      "week",
                                                      "mil",
                                                      "inch",
                                                      "foot",
                                                      "inch * inch * inch",
                                                      "foot * foot * foot",
                                                      "meter",
                                                      "meter * meter * meter * 10^-6",
                                                      "meter * meter * meter",
                                                      "liter",
                                                      "fluid ounce",
                                                      "radian",
                                                      "steradian",
                                                      "revolution",
                                                      "cycle",
                                                      "gravity",
                                                      "ounce",
                                                      "pound",
                                                      "foot * pound",
                                                      "ounce * inch",
                                                      "gauss",
                                                      "gilbert",
                                                      "henry",
                                                      "farad",
                                                      "ohm",
                                                      "siemens",
                                                      "mole",
                                                      "becquerel",
                                                      "ppm",
                                                      "decibel",
                                                      "decibel(a)",
                                                      "decibel(c)",
                                                      "gray",
                                                      "sievert",
                                                      "kelvin",
                                                      "bit",
                                                      "byte",
                                                      "dataword",
                                                      "dataword * 2",
                                                      "dataword * 4",
                                                      "percent",
                                                      "pascal"};

/// By the numbers of RateUnits.
constexpr std::array<std::string_view, 10> kRateTexts{"",          " / second * 10^6", " / second * 10^3", " / second",
                                                      " / minute", " / hour",          " / day",           " / week",
                                                      " / month",  " / year"};

} // namespace

bool SensorUnits::IsReading(const std::string& property) {
    return std::binary_search(kReadings.begin(), kReadings.end(), std::string_view(property));
}

std::optional<Unit> SensorUnits::UnitOf(std::uint64_t baseUnits, std::int64_t unitModifier, std::uint64_t rateUnits) {
    if (baseUnits >= kUnitTexts.size() || rateUnits >= kRateTexts.size() || kUnitTexts.at(baseUnits).empty()) {
        return std::nullopt;
    }
    std::string text(kUnitTexts.at(baseUnits));
    text += kRateTexts.at(rateUnits);
    text += " * 10^" + std::to_string(unitModifier);
    return ParseProgrammaticUnit(text);
}

} // namespace NQORVYX20
