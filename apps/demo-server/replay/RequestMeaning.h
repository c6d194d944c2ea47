#pragma once

#include "wire/CimRequest.h"

#include <string>

namespace demo {

/// A text that is the same for two requests exactly when they ask for the same: operation, namespace and parameters,
/// whatever their order, the case of names and how booleans are written. What changes from one run of a client to the
/// next makes no difference: message IDs, how many objects of a pulled enumeration it wants at once, and how long that
/// may rest.
std::string MeaningOf(const CimRequest& request);

/// What a request means, for people: "EnumerateInstances of CIM_Fan in root/cimv2". What is no printable ASCII is "?".
std::string ShortTextOf(const CimRequest& request);

} // namespace demo
