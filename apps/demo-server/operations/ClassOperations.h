#pragma once

#include "operations/Operation.h"

namespace demo {

/// GetClass, EnumerateClasses and EnumerateClassNames.
Operations ClassOperations();

} // namespace demo
