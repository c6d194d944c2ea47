#pragma once

#include "schema/Value.h"

namespace pugi {
class xml_node;
}

namespace demo {

/// Reads an element that names a class or an instance: CLASSNAME, INSTANCENAME, or one of the elements of DSP0201 that
/// put a host or a namespace in front of these. A host is left out, because a server does not know all of its names.
/// The type of a key is what its VALUETYPE and TYPE tell; a key without a KEYBINDING has no name. Throws HttpError
/// (request-not-valid) when the element is none of these or paths are nested too deeply.
ObjectPath ReadObjectPath(const pugi::xml_node& node);

} // namespace demo
