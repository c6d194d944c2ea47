#pragma once

#include "display/Unit.h"

#include <optional>
#include <string_view>

namespace NQORVYX20 {

/// A unit in the words of the qualifier Units, such as `KiloBits per Second`, `Hundredths of Degrees C` or `250
/// nanoseconds`, in any case and with or without an s for the plural; or by its symbol, `MHz`, in just that case. Bytes
/// with a prefix are counted in 1024s, bytes per second and bits in 1000s. Nothing for an unknown unit.
std::optional<Unit> ParseUnitText(std::string_view text);

} // namespace NQORVYX20
