#pragma once

#include <cstdint>

namespace NQORVYX20 {

/// What a number in some unit is multiplied by to be one in the unit's base: `factor / divisor * 10^ten * 2^two`,
/// negative for units such as `-dBm`.
struct Scale {
    std::uint64_t factor = 1;
    std::uint64_t divisor = 1;
    int ten = 0;
    int two = 0;
    bool isNegative = false;

    bool IsOne() const { return IsPower() && ten == 0 && two == 0; }

    /// Whether it is made of powers of ten and two alone.
    bool IsPower() const { return factor == 1 && divisor == 1; }
};

} // namespace NQORVYX20
