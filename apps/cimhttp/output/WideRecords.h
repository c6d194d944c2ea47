#pragma once

#include "output/InstanceProperties.h"
#include "output/Listing.h"

#include <string>

namespace cimhttp {

class ValueTexts;

/// An instance a row: its class, its path, and a column for each of the properties. A value is the text that it is
/// shown by or, with `isRaw`, as it is; an array is a JSON array of these. What is null, and a property that the
/// instance's own class does not declare, is without a value. About `nameSpace` see PathOf().
Listing WideRecords(const Instances& instances, const Properties& properties, const ValueTexts& texts, bool isRaw,
                    const std::string& nameSpace);

} // namespace cimhttp
