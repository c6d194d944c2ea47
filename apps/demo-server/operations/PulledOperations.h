#pragma once

#include "operations/Operation.h"

namespace demo {

class Enumerations;

/// OpenEnumerateInstances and its siblings, PullInstancesWithPath, PullInstancePaths, CloseEnumeration and
/// EnumerationCount. The enumerations must outlive the operations.
Operations PulledOperations(Enumerations& enumerations);

} // namespace demo
