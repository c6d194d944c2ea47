#pragma once

#include "display/Unit.h"

#include <optional>
#include <string_view>

namespace NQORVYX20 {

/// A unit in the language of the qualifier PUnit (DSP0004, annex C): base units with `*` and `/` between them, and then
/// numbers and powers, as in `byte / second * 10^3`. Case and blanks do not count. Nothing for a text that is no such
/// unit, has an unknown base unit, or numbers out of any reasonable range.
std::optional<Unit> ParseProgrammaticUnit(std::string_view text);

} // namespace NQORVYX20
