#include "commands/ShownProperties.h"

#include "host/ICIMPropertyDecl.h"
#include "output/InstanceListing.h"
#include "text/Names.h"

#include <algorithm>
#include <iterator>

namespace cimhttp {

using NQORVYX20::TCIMContext;

Properties WithSomethingToShow(const Properties& properties, const Instances& instances,
                               const InstanceListing& listing) {
    Properties shown;
    std::copy_if(properties.begin(), properties.end(), std::back_inserter(shown),
                 [&](const auto& property) { return !listing.IsEmpty(instances, *property); });
    return shown;
}

Properties AddedBySubclasses(const Instances& instances, const Properties& ofClass) {
    NameSet known;
    for (const auto& property : ofClass) {
        known.insert(property->GetName(TCIMContext()));
    }
    const Properties all = PropertiesOf(instances);
    Properties added;
    std::copy_if(all.begin(), all.end(), std::back_inserter(added),
                 [&](const auto& property) { return known.count(property->GetName(TCIMContext())) == 0; });
    return added;
}

} // namespace cimhttp
