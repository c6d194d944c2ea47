#pragma once

#include "output/InstanceProperties.h"
#include "output/Listing.h"
#include "output/PropertySelector.h"

namespace cimhttp {

class ValueTexts;

/// Instances for programs, a property a row: the instance's path, the property, its type, its value as it is, and the
/// text that it is shown by. An array's value is a JSON array, so that it can be taken apart again. About `nameSpace`
/// see PathOf().
Listing InstanceRecords(const Instances& instances, PropertySelector selector, const ValueTexts& texts,
                        const std::string& nameSpace);

} // namespace cimhttp
