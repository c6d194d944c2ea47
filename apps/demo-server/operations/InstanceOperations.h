#pragma once

#include "operations/Operation.h"

namespace demo {

/// GetInstance, EnumerateInstances, EnumerateInstanceNames and GetProperty.
Operations InstanceOperations();

} // namespace demo
