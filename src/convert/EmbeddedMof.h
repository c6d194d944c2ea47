#pragma once

#include "cimhttp/EmbeddedObject.h"

#include <Pegasus/Client/CIMClient.h>

#include <string>

namespace NQORVYX20 {

// The MOF (DSP0004) of embedded objects.

/// Of an instance, of which all but `mof` is set. An object within it is a string that holds its MOF.
std::string InstanceMof(const EmbeddedObject& instance);

/// Of a class, with its qualifiers, defaults and methods.
std::string ClassMof(Pegasus::CIMClass& cls);

} // namespace NQORVYX20
