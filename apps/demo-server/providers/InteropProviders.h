#pragma once

#include "providers/InstanceProvider.h"
#include "providers/SystemFiles.h"
#include "schema/Schema.h"

#include <string>
#include <vector>

namespace demo {

/// The namespace with the instances that the registered profiles are about.
struct ImplementationNamespace {
    const std::string& name;
    const Schema& schema;
    /// Those of LiveProviders() are among them.
    const InstanceProviders& providers;
};

/// What the Interop namespace tells of the server: itself, its namespaces, and profiles with the instances to begin
/// with. The schemas, that of the Interop namespace among them, must outlive the providers; they can be moved
/// meanwhile. So must the providers of the other namespace.
InstanceProviders InteropProviders(const Schema& schema, const ImplementationNamespace& implementation,
                                   const std::vector<std::string>& nameSpaces, const SystemFiles& files);

} // namespace demo
