#pragma once

#include "host/TCIMValue.h"

#include <Pegasus/Client/CIMClient.h>

namespace NQORVYX20 {

class StreamedText;

/// Turns a remote value into a host value. `type` and `isArray` must be those of the value; its own are not asked for.
/// `out` is assigned once, at the end; it stays as it was for a type that the host does not have (embedded objects) and
/// for arrays of references. A null boolean becomes false, another null the empty value of its type.
/// Throws what the remote library throws, and TVYXException eTypeMismatch for a date-time that the host does not
/// accept.
void pegValToVYX(Pegasus::CIMValue value, Pegasus::CIMType type, bool isArray, TCIMValue& out);

/// Converts one of many values, whose array elements are all written by `texts`.
void pegValToVYX(const Pegasus::CIMValue& value, Pegasus::CIMType type, bool isArray, StreamedText& texts,
                 TCIMValue& out);

} // namespace NQORVYX20
