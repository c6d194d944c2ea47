#pragma once

#include "output/InstanceProperties.h"

namespace cimhttp {

class InstanceListing;

/// The properties of which any of the instances has something to show.
Properties WithSomethingToShow(const Properties& properties, const Instances& instances,
                               const InstanceListing& listing);

/// What the classes of the instances have beyond these properties of a common class.
Properties AddedBySubclasses(const Instances& instances, const Properties& ofClass);

} // namespace cimhttp
