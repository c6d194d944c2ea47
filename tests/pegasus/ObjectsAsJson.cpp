#include "ObjectsAsJson.h"

#include <cmath>
#include <string>
#include <type_traits>

using nlohmann::json;
using namespace Pegasus;

namespace {

/// The parts of objects, by name: {"Name": asJson(part)}.
template <class Count, class Part, class Shown>
json byName(Count count, Part part, Shown shown) {
    json all = json::object();
    for (Uint32 i = 0; i < count; ++i) {
        const auto one = part(i);
        all[std::string(one.getName().getString().view())] = shown(one);
    }
    return all;
}

/// Adds a member, unless it has nothing.
void addUnlessEmpty(json& to, const char* name, json value) {
    if (!value.empty()) {
        to[name] = std::move(value);
    }
}

template <class T>
json scalarAsJson(const T& scalar) {
    if constexpr (std::is_same_v<T, Char16>) {
        return json(static_cast<Uint16>(scalar));
    } else if constexpr (std::is_same_v<T, CIMDateTime>) {
        return asJson(scalar.toString());
    } else if constexpr (std::is_floating_point_v<T>) {
        return std::isinf(scalar) ? json(scalar < 0 ? "-inf" : "inf") : json(static_cast<double>(scalar));
    } else if constexpr (std::is_arithmetic_v<T>) {
        return json(scalar);
    } else {
        return asJson(scalar);
    }
}

template <class T>
json contentAsJson(const CIMValue& value) {
    if (value.isNull()) {
        return nullptr;
    }
    if (!value.isArray()) {
        T scalar{};
        value.get(scalar);
        return scalarAsJson(scalar);
    }
    Array<T> items;
    value.get(items);
    json all = json::array();
    for (Uint32 i = 0; i < items.size(); ++i) {
        all.push_back(value.isNullElement(i) ? json() : scalarAsJson(items[i]));
    }
    return all;
}

json contentAsJson(const CIMValue& value) {
    switch (value.getType()) {
    case CIMTYPE_BOOLEAN:
        return contentAsJson<Boolean>(value);
    case CIMTYPE_UINT8:
        return contentAsJson<Uint8>(value);
    case CIMTYPE_SINT8:
        return contentAsJson<Sint8>(value);
    case CIMTYPE_UINT16:
        return contentAsJson<Uint16>(value);
    case CIMTYPE_SINT16:
        return contentAsJson<Sint16>(value);
    case CIMTYPE_UINT32:
        return contentAsJson<Uint32>(value);
    case CIMTYPE_SINT32:
        return contentAsJson<Sint32>(value);
    case CIMTYPE_UINT64:
        return contentAsJson<Uint64>(value);
    case CIMTYPE_SINT64:
        return contentAsJson<Sint64>(value);
    case CIMTYPE_REAL32:
        return contentAsJson<Real32>(value);
    case CIMTYPE_REAL64:
        return contentAsJson<Real64>(value);
    case CIMTYPE_CHAR16:
        return contentAsJson<Char16>(value);
    case CIMTYPE_STRING:
        return contentAsJson<String>(value);
    case CIMTYPE_DATETIME:
        return contentAsJson<CIMDateTime>(value);
    case CIMTYPE_REFERENCE:
        return contentAsJson<CIMObjectPath>(value);
    case CIMTYPE_OBJECT:
        return contentAsJson<CIMObject>(value);
    case CIMTYPE_INSTANCE:
        return contentAsJson<CIMInstance>(value);
    }
    return nullptr;
}

std::string typeText(CIMType type, bool isArray) { return std::string(cimTypeToString(type)) + (isArray ? "[]" : ""); }

template <class Element>
json qualifiersAsJson(const Element& element) {
    return byName(
        element.getQualifierCount(), [&](Uint32 i) { return element.getQualifier(i); },
        [](const CIMConstQualifier& qualifier) { return asJson(qualifier.getValue()); });
}

json declarationAsJson(const CIMConstProperty& property) {
    json result{{"value", asJson(property.getValue())}};
    addUnlessEmpty(result, "class", asJson(property.getReferenceClassName()));
    addUnlessEmpty(result, "qualifiers", qualifiersAsJson(property));
    return result;
}

json declarationAsJson(const CIMConstMethod& method) {
    json result{{"type", cimTypeToString(method.getType())}};
    addUnlessEmpty(result, "parameters",
                   byName(
                       method.getParameterCount(), [&](Uint32 i) { return method.getParameter(i); },
                       [](const CIMConstParameter& parameter) {
                           return json(typeText(parameter.getType(), parameter.isArray()));
                       }));
    addUnlessEmpty(result, "qualifiers", qualifiersAsJson(method));
    return result;
}

} // namespace

json asJson(const String& text) { return json(std::string(text.view())); }

json asJson(const CIMName& name) { return name.isNull() ? json(json::value_t::array) : asJson(name.getString()); }

json asJson(const CIMObjectPath& path) { return asJson(path.toString()); }

json asJson(const CIMValue& value) {
    return json::array({typeText(value.getType(), value.isArray()), contentAsJson(value)});
}

json asJson(const CIMInstance& instance) {
    return {{"path", asJson(instance.getPath())},
            {"properties", byName(
                               instance.getPropertyCount(), [&](Uint32 i) { return instance.getProperty(i); },
                               [](const CIMConstProperty& property) { return asJson(property.getValue()); })}};
}

json asJson(const CIMClass& cimClass) {
    json result{{"class", asJson(cimClass.getClassName())}};
    addUnlessEmpty(result, "superclass", asJson(cimClass.getSuperClassName()));
    addUnlessEmpty(result, "qualifiers", qualifiersAsJson(cimClass));
    addUnlessEmpty(result, "properties",
                   byName(
                       cimClass.getPropertyCount(), [&](Uint32 i) { return cimClass.getProperty(i); },
                       [](const CIMConstProperty& property) { return declarationAsJson(property); }));
    addUnlessEmpty(result, "methods",
                   byName(
                       cimClass.getMethodCount(), [&](Uint32 i) { return cimClass.getMethod(i); },
                       [](const CIMConstMethod& method) { return declarationAsJson(method); }));
    return result;
}

json asJson(const CIMObject& object) {
    if (object.isInstance()) {
        return asJson(CIMInstance(object));
    }
    json result = asJson(CIMClass(object));
    result["path"] = asJson(object.getPath());
    return result;
}

json asJson(const CIMQualifierDecl& decl) {
    return {{"qualifier", asJson(decl.getName())},
            {"value", asJson(decl.getValue())},
            {"scope", asJson(decl.getScope().toString())}};
}
