#pragma once

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMValue.h>

#include <nlohmann/json.hpp>

// What a client has received, as JSON that people can write and compare. A value is an array of its type and its
// content, as in ["uint16[]", [1, null, 3]]; reals beyond all numbers are "inf" and "-inf", date-times and paths texts.

nlohmann::json asJson(const Pegasus::String& text);
nlohmann::json asJson(const Pegasus::CIMName& name);
nlohmann::json asJson(const Pegasus::CIMObjectPath& path);
nlohmann::json asJson(const Pegasus::CIMValue& value);
/// Path and properties.
nlohmann::json asJson(const Pegasus::CIMInstance& instance);
/// Name, superclass, qualifiers, properties and methods, as far as it has them.
nlohmann::json asJson(const Pegasus::CIMClass& cimClass);
/// What the object is; the path of a class, too.
nlohmann::json asJson(const Pegasus::CIMObject& object);
/// Name, value and scope.
nlohmann::json asJson(const Pegasus::CIMQualifierDecl& decl);

/// An object for each element.
template <class T>
nlohmann::json asJson(const Pegasus::Array<T>& objects) {
    nlohmann::json all = nlohmann::json::array();
    for (const T& object : objects) {
        all.push_back(asJson(object));
    }
    return all;
}
