#pragma once

namespace NQORVYX20 {

struct Unit;

/// How the texts of values are wanted.
struct DisplayChoice {
    bool isUnscaled = false;    ///< numbers as they are, with their unit: `2300 MHz`, not `2.3 GHz`
    bool saysWhatIsNot = false; ///< `17 (not in the map)` for a number that a value map has no text for
    const Unit* unit = nullptr; ///< the unit to be used instead of the declaration's
};

} // namespace NQORVYX20
