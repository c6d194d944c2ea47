#pragma once

#include "operations/Operation.h"

namespace demo {

/// GetQualifier and EnumerateQualifiers.
Operations QualifierOperations();

} // namespace demo
