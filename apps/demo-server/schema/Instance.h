#pragma once

#include "schema/Declarations.h"
#include "schema/Names.h"
#include "schema/Value.h"

#include <map>
#include <string>

namespace demo {

/// The values of an instance. A property without a value here has the default of its declaration.
struct Instance {
    std::string className;
    std::map<std::string, Value, NameLess> values;

    /// The value of a property of the instance's class.
    const Value& ValueOf(const Property& property) const {
        const auto found = values.find(property.name);
        return found == values.end() ? property.defaultValue : found->second;
    }
};

/// The path of an instance: its class and the values of the key properties.
inline ObjectPath PathOf(const Class& declaration, const Instance& instance) {
    ObjectPath path{declaration.name, {}};
    for (const auto& property : declaration.properties) {
        if (property.Is("Key")) {
            path.keys.push_back({property.name, property.type, instance.ValueOf(property)});
        }
    }
    return path;
}

} // namespace demo
