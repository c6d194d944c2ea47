#pragma once

#include "display/Unit.h"

#include <optional>
#include <string>
#include <vector>

namespace NQORVYX20 {

class ICIMClass;
class ICIMInstance;
class FaithfulTexts;

/// The names of the properties by which instances of a class tell the unit of one of its properties, see FaithfulTexts:
/// a numeric sensor's of its readings, and the property that holds the unit by the qualifier ISPUnit. Nearly always
/// none.
std::vector<std::string> UnitTellers(const ICIMClass& cls, const FaithfulTexts& property);

/// The unit of a property where its instance tells it, not its declaration. Asks no server. Nothing where one of the
/// values that tell it is missing.
std::optional<Unit> UnitToldBy(const ICIMInstance& instance, const FaithfulTexts& property);

} // namespace NQORVYX20
