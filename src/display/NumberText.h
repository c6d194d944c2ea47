#pragma once

#include "display/Fraction.h"

#include <string>

namespace NQORVYX20 {

/// `number / 10^decimals` with that many decimal places: `1.5` for 15 and 1.
std::string NumberText(Fraction::TNumber number, int decimals);

} // namespace NQORVYX20
