#pragma once

#include "schema/Value.h"

namespace pugi {
class xml_node;
}

namespace demo {

/// Reads an element that names a class or an instance: CLASSNAME, INSTANCENAME, or one of the elements of DSP0201 that
/// put a host or a namespace in front of these. The type of a key is one of those that its VALUETYPE tells; a key
/// without a KEYBINDING has no name. Throws HttpError (request-not-valid) when the element is none of these or paths
/// are nested too deeply.
ObjectPath ReadObjectPath(const pugi::xml_node& node);

} // namespace demo
