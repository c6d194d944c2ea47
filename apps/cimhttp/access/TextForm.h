#pragma once

namespace cimhttp {

/// How a user wants the texts of values.
struct TextForm {
    bool isUnscaled = false;    ///< numbers as they are, with their unit: `2300 MHz`, not `2.3 GHz`
    bool saysWhatIsNot = false; ///< `17 (not in the map)` for a number that a value map has no text for
};

} // namespace cimhttp
