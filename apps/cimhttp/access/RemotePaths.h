#pragma once

#include "access/RemoteModel.h"

#include <Pegasus/Client/CIMClient.h>

#include <string>
#include <vector>

namespace cimhttp {

/// An object path in one of the forms that clients print, see PluginAccess::ReadInstance. Throws std::invalid_argument
/// for another text; its message says what is wrong, to be put after the path.
Pegasus::CIMObjectPath ParsedPath(const std::string& text);

/// Throws std::invalid_argument for a text that is not the name of a class, property or the like.
void CheckName(const std::string& text);

/// The host's references for paths, in their order.
std::vector<NQORVYX20::TCIMReference> HostReferences(const Pegasus::Array<Pegasus::CIMObjectPath>& paths);

/// The text of a name, empty for one that is null.
std::string NameText(const Pegasus::CIMName& name);
std::string NameText(const Pegasus::CIMNamespaceName& name);

} // namespace cimhttp
