#include "schema/CheckedPath.h"

#include <utility>

namespace demo {

namespace {

/// The binding of a key, null if there is none. That of the only key need not say its name (DSP0201, INSTANCENAME).
const KeyBinding* FindBinding(const ObjectPath& path, const std::string& key) {
    if (path.keys.size() == 1 && path.keys.front().name.empty()) {
        return path.keys.data();
    }
    return path.FindKey(key);
}

Value CheckedValue(const Schema& schema, const std::string& nameSpace, const Property& key, const Value& value) {
    if (key.type == CimType::kReference) {
        const ObjectPath* const reference = value.AsReference();
        if (reference && !reference->nameSpace.empty() && !SameName(reference->nameSpace, nameSpace)) {
            return value;
        }
        const Class* const declaration = reference ? schema.FindClass(reference->className) : nullptr;
        if (!declaration) {
            throw PathError("the key " + key.name + " must be the path of an instance");
        }
        return Value::Reference(CheckedPath(schema, nameSpace, *declaration, *reference));
    }
    const std::string* const text = value.AsText();
    auto normal = text ? NormalForm(key.type, *text) : std::nullopt;
    if (!normal) {
        throw PathError("the key " + key.name + " must be of type " + std::string(TypeName(key.type)));
    }
    return Value::Text(*std::move(normal));
}

} // namespace

ObjectPath CheckedPath(const Schema& schema, const std::string& nameSpace, const Class& declaration,
                       const ObjectPath& path) {
    ObjectPath result{declaration.name, {}};
    for (const auto& property : declaration.properties) {
        if (!property.Is("Key")) {
            continue;
        }
        const KeyBinding* const binding = FindBinding(path, property.name);
        if (!binding) {
            throw PathError("the path of an instance of " + declaration.name + " needs the key " + property.name);
        }
        result.keys.push_back(
            {property.name, property.type, CheckedValue(schema, nameSpace, property, binding->value)});
    }
    if (result.keys.size() != path.keys.size()) {
        throw PathError("the path of an instance of " + declaration.name + " has keys that the class does not have");
    }
    if (!SameName(path.nameSpace, nameSpace)) {
        result.nameSpace = path.nameSpace;
    }
    return result;
}

} // namespace demo
