#pragma once

#include "display/Fraction.h"
#include "display/Unit.h"

#include <string>

namespace NQORVYX20 {

/// A number in a unit as people write it: `16 GiB`, `2.3 GHz`, `23.5 °C`, `1500 B`, `2 d 03:04:05`. It is exact where
/// it has four digits at most or is whole without a prefix; otherwise it has one decimal place, also where that is 0.
std::string QuantityText(const ExactNumber& number, const Unit& unit);

/// The number as it is, with its unit: `17179869184 B`, `2300 MHz`, `2350 × 0.01 °C`. `digits` is the number's text.
std::string UnscaledText(const std::string& digits, const Unit& unit);

} // namespace NQORVYX20
