#pragma once

#include "host/TCIMValue.h"

#include <string>
#include <vector>

namespace NQORVYX20 {

class ICIMInstance;

/// An instance or class that is the value of a property. The host's model has no type for it: there the value is a
/// string, the object's MOF.
struct EmbeddedObject {
    struct Property {
        std::string name;
        TCIMValue value;                     ///< typed, also when null; the MOF of `objects` when there are some
        std::vector<EmbeddedObject> objects; ///< the embedded objects that are the value: one, or an array's
    };

    std::string className; ///< empty for a null element of an array
    bool isClass = false;  ///< a class, whose values are its defaults
    std::vector<Property> properties;
    std::string mof;
};

/// The embedded objects that are the value of an instance's property, the name of which is matched without regard to
/// case: one, or one for each element of an array. None for a value of another kind, for a property that is not there,
/// and for an instance of a compatible namespace. Copies, which outlive the instance. Asks no server. Throws
/// TVYXException eInvalidName for a text that is no name. Exported by the plug-in, and used from the thread that uses
/// the instance's namespace.
std::vector<EmbeddedObject> EmbeddedObjectsOf(const ICIMInstance& instance, const std::string& property);

} // namespace NQORVYX20
