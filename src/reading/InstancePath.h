#pragma once

#include "host/TCIMReference.h"
#include "host/TCIMValue.h"

#include <Pegasus/Client/CIMClient.h>

#include <string>

namespace NQORVYX20 {

class ICIMClass;

/// A server's path of an instance.
struct InstancePath {
    /// The path for the host. Its keys have the types that the class declares.
    TCIMReference reference;

    /// One text for equal paths and no others, whatever the letter case of the names in them and the way their numbers
    /// are written.
    std::string key;
};

/// The path of an instance of a class. A path in the namespace that is read does not name it.
InstancePath PathOf(const Pegasus::CIMObjectPath& path, const ICIMClass& cls, const Pegasus::CIMNamespaceName& read);

/// Without the key, which takes as long as the rest.
TCIMReference ReferenceOf(const Pegasus::CIMObjectPath& path, const ICIMClass& cls,
                          const Pegasus::CIMNamespaceName& read);

/// The path to ask a server for: that of the reference, its keys of the kinds that the class declares, without host and
/// namespace. Throws TVYXException eTypeMismatch for a reference that is not a path, eNotFound for one in another
/// namespace than `read`.
Pegasus::CIMObjectPath RemotePathOf(const TCIMReference& reference, const ICIMClass& cls,
                                    const Pegasus::CIMNamespaceName& read);

} // namespace NQORVYX20
