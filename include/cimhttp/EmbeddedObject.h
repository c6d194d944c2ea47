#pragma once

#include "host/TCIMValue.h"

#include <string>
#include <vector>

namespace NQORVYX20 {

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

} // namespace NQORVYX20
