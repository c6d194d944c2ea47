#include "output/ClassJson.h"

#include "output/Json.h"
#include "output/QualifierMeaning.h"

namespace cimhttp {

namespace {

std::string QualifiersJson(const std::vector<RemoteQualifier>& qualifiers) {
    JsonObject object;
    for (const RemoteQualifier& qualifier : qualifiers) {
        object.Add(qualifier.name, JsonValue(qualifier.value));
    }
    return object.Text();
}

/// What a property, a method or a parameter begins with.
JsonObject ElementJson(const std::string& name, const RemoteType& type) {
    JsonObject object;
    object.Add("name", JsonText(name)).Add("type", JsonText(type.name)).Add("array", JsonValue(type.isArray));
    if (!type.referenceClass.empty()) {
        object.Add("class", JsonText(type.referenceClass));
    }
    return object;
}

template <typename Feature>
std::string FeatureJson(JsonObject object, const Feature& feature) {
    return object.Add("origin", JsonText(feature.origin))
        .Add("inherited", JsonValue(feature.isInherited))
        .Add("qualifiers", QualifiersJson(feature.qualifiers))
        .Text();
}

std::string ParameterJson(const RemoteParameter& parameter) {
    return ElementJson(parameter.name, parameter.type)
        .Add("direction", JsonText(DirectionOf(parameter)))
        .Add("qualifiers", QualifiersJson(parameter.qualifiers))
        .Text();
}

std::string PropertyJson(const RemoteProperty& property) {
    JsonObject object = ElementJson(property.name, property.type);
    return FeatureJson(object.Add("default", JsonValue(property.defaultValue)), property);
}

std::string MethodJson(const RemoteMethod& method) {
    JsonObject object = ElementJson(method.name, method.type);
    return FeatureJson(object.Add("parameters", JsonArray(method.parameters, ParameterJson)), method);
}

} // namespace

std::string ClassJson(const RemoteClass& cls) {
    return JsonObject()
        .Add("name", JsonText(cls.name))
        .Add("superclass", cls.superclass.empty() ? "null" : JsonText(cls.superclass))
        .Add("qualifiers", QualifiersJson(cls.qualifiers))
        .Add("properties", JsonArray(cls.properties, PropertyJson))
        .Add("methods", MethodsJson(cls))
        .Text();
}

std::string MethodsJson(const RemoteClass& cls) { return JsonArray(cls.methods, MethodJson); }

} // namespace cimhttp
