#pragma once

#include "cimhttp/EmbeddedObject.h"

#include <Pegasus/Client/CIMClient.h>

namespace NQORVYX20 {

/// An embedded instance or class with its values and its MOF. The object must be initialised. Throws as HostValue()
/// does.
EmbeddedObject ToEmbeddedObject(const Pegasus::CIMInstance& instance);
EmbeddedObject ToEmbeddedObject(const Pegasus::CIMObject& object);

} // namespace NQORVYX20
