#pragma once

#include <string>
#include <string_view>

namespace NQORVYX20 {

/// One of the units that others are made of.
struct BaseUnit {
    std::string_view name;     ///< as programmatic units have it, `degree celsius` (DSP0004, annex C)
    std::string_view symbol;   ///< `°C`
    bool hasPrefixes;          ///< whether people write a thousand of them with a prefix
    unsigned seconds;          ///< for a unit of time, how long it is; 0 for others
    std::string_view singular; ///< where the symbol is a word, that for one
};

/// The unit with this name in lower case; null when there is none.
const BaseUnit* FindBaseUnit(std::string_view name);

/// The unit of a word of people's, in lower case, in singular or plural, such as `bytes`, `feet` or `degrees c`.
const BaseUnit* FindUnitWord(std::string_view word);

/// A text in lower case, with one blank where it has several, and none at its ends. Letters beyond ASCII stay.
std::string Simplified(std::string_view text);

} // namespace NQORVYX20
