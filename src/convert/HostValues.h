#pragma once

#include "cimhttp/EmbeddedObject.h"
#include "host/ICIMQualifierDecl.h"
#include "host/TCIMReference.h"
#include "host/TCIMValue.h"

#include <Pegasus/Client/CIMClient.h>

#include <vector>

namespace NQORVYX20 {

// Remote values as host values without a loss: what the faithful reading uses. What is lost or made up for hosts that
// read compatibly is in RemoteValues.h and RemoteTypes.h.

/// The host's type of a remote one. Embedded objects are strings.
TCIMValue::TCIMType HostType(Pegasus::CIMType type, bool isArray);

/// The host's value: null of its type for null, also within an array; a char16 as the character; a reference as
/// ToHostReference() gives it; an embedded object as its MOF. Throws what the client library throws, and TVYXException
/// eTypeMismatch for a date-time that the host does not accept.
TCIMValue HostValue(const Pegasus::CIMValue& value);

/// The embedded objects that are a value, or the elements of one, an object without a class name for a null element.
/// None for null and for a value of another type.
std::vector<EmbeddedObject> EmbeddedObjectsIn(const Pegasus::CIMValue& value);

/// A path with its host, namespace, class and keys. Numbers, booleans and references among the keys keep their kind.
TCIMReference ToHostReference(const Pegasus::CIMObjectPath& path);

/// The value of a key of this type, or of the kind that the path gives it where it is no such value or no type is known
/// (`eCIMUnknown`).
TCIMValue HostKeyValue(const Pegasus::CIMKeyBinding& key, TCIMValue::TCIMType type);

/// All bits of a scope or a flavor that the host has.
ICIMQualifierDecl::EScope HostScope(const Pegasus::CIMScope& scope);
ICIMQualifierDecl::EFlavor HostFlavor(const Pegasus::CIMFlavor& flavor);

} // namespace NQORVYX20
