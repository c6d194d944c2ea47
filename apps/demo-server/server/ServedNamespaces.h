#pragma once

#include "providers/SystemFiles.h"
#include "schema/SchemasByNamespace.h"
#include "server/CimService.h"

#include <cstddef>
#include <string>
#include <vector>

namespace demo {

/// What the namespaces of the server hold: root/cimv2 this machine and so many volumes, the Interop namespace the
/// server itself, and all of them the base classes and what is added to them. A namespace that is named only by what is
/// added to it holds no more than that. Throws SchemaError when an added schema is wrong, std::invalid_argument when a
/// name is none, or the Interop namespace is to have that of root/cimv2.
std::vector<NamespaceContent> ServedNamespaces(SchemasByNamespace added, const std::string& interop,
                                               const SystemFiles& files, std::size_t volumes);

} // namespace demo
