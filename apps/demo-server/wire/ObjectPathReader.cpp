#include "wire/ObjectPathReader.h"

#include "wire/CimError.h"
#include "wire/NodeAccess.h"

#include <pugixml.hpp>

namespace demo {

namespace {

/// How deeply a path can stand within the keys of another one.
constexpr int kMaxNesting = 8;

ObjectPath ReadPath(const pugi::xml_node& node, int nesting);

/// A type of those that a VALUETYPE stands for.
CimType KeyType(const pugi::xml_node& keyValue) {
    const std::string_view kind = keyValue.attribute("VALUETYPE").value();
    return kind == "boolean" ? CimType::kBoolean : kind == "numeric" ? CimType::kReal64 : CimType::kString;
}

KeyBinding ReadKey(const pugi::xml_node& node, std::string name, int nesting) {
    const std::string_view kind = node.name();
    if (kind == "KEYVALUE") {
        return {std::move(name), KeyType(node), Value::Text(node.text().get())};
    }
    if (kind == "VALUE.REFERENCE") {
        return {std::move(name), CimType::kReference, Value::Reference(ReadPath(node.first_child(), nesting + 1))};
    }
    RequestNotValid(std::string("element ") + node.name() + " is no value of a key");
}

ObjectPath ReadInstanceName(const pugi::xml_node& node, int nesting) {
    ObjectPath path{RequiredAttribute(node, "CLASSNAME"), {}};
    for (const auto& child : Content(node)) {
        if (std::string_view(child.name()) == "KEYBINDING") {
            path.keys.push_back(ReadKey(child.first_child(), RequiredAttribute(child, "NAME"), nesting));
        } else {
            path.keys.push_back(ReadKey(child, "", nesting));
        }
    }
    return path;
}

ObjectPath ReadPath(const pugi::xml_node& node, int nesting) {
    if (nesting > kMaxNesting) {
        RequestNotValid("object paths are nested too deeply");
    }
    const std::string_view kind = node.name();
    if (kind == "CLASSNAME") {
        return {RequiredAttribute(node, "NAME"), {}};
    }
    if (kind == "INSTANCENAME") {
        return ReadInstanceName(node, nesting);
    }
    if (kind != "LOCALCLASSPATH" && kind != "LOCALINSTANCEPATH" && kind != "CLASSPATH" && kind != "INSTANCEPATH") {
        RequestNotValid("element " + std::string(kind) + " is no object path");
    }
    const auto namespacePath = node.first_child();
    ObjectPath path = ReadPath(namespacePath.next_sibling(), nesting + 1);
    path.nameSpace = ReadNamespace(std::string_view(namespacePath.name()) == "NAMESPACEPATH"
                                       ? namespacePath.child("LOCALNAMESPACEPATH")
                                       : namespacePath);
    path.host = namespacePath.child("HOST").text().get();
    return path;
}

} // namespace

ObjectPath ReadObjectPath(const pugi::xml_node& node) { return ReadPath(node, 0); }

} // namespace demo
