#pragma once

#include "host/ICIMInstance.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace NQORVYX20 {

using TInstances = std::vector<boost::shared_ptr<ICIMInstance>>;

/// The association instances that refer to `instance`, each once: those of its class's association classes in which a
/// reference property, the one named `role` when given, names it.
TInstances FindAssociationInstances(const ICIMInstance& instance, const std::string& resultClass,
                                    const std::string& role, TCIMContext context);

/// The instances at the other ends of those associations, each once: the far end is any reference property other than
/// the near one, restricted to `resultRole` and to subclasses of `resultClass` when given.
TInstances FindAssociatedInstances(const ICIMInstance& instance, const std::string& assocClass,
                                   const std::string& resultClass, const std::string& role,
                                   const std::string& resultRole, TCIMContext context);

} // namespace NQORVYX20
