#pragma once

#include <optional>

#include "display/Unit.h"

namespace NQORVYX20 {

class ICIMInstance;
class ICIMPropertyDecl;

/// The unit of a property where its instance tells it, not its declaration: that of a numeric sensor's readings, and
/// that of a property whose qualifier ISPUnit names the property which holds the unit. Asks no server.
std::optional<Unit> UnitToldBy(const ICIMInstance& instance, const ICIMPropertyDecl& declaration);

} // namespace NQORVYX20
