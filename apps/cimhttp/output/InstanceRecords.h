#pragma once

#include "output/InstanceProperties.h"
#include "output/Listing.h"
#include "output/PropertySelector.h"

#include <string>

namespace cimhttp {

class ValueTexts;

// Instances for programs. About `nameSpace` see PathOf().

/// A property a row: the instance's path, the property, its type, its value as it is, and the text that it is shown by.
/// An array's value is a JSON array, so that it can be taken apart again.
Listing InstanceRecords(const Instances& instances, PropertySelector selector, const ValueTexts& texts,
                        const std::string& nameSpace);

/// An instance a row: its class, its path, and a column for each of the properties. A value is the text that it is
/// shown by or, with `isRaw`, as it is; an array is a JSON array of these. What is null, and a property that the
/// instance's own class does not declare, is without a value.
Listing WideRecords(const Instances& instances, const Properties& properties, const ValueTexts& texts, bool isRaw,
                    const std::string& nameSpace);

} // namespace cimhttp
