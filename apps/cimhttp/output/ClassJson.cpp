#include "output/ClassJson.h"

#include "host/ICIMClass.h"
#include "host/ICIMMethodDecl.h"
#include "host/ICIMParameterDecl.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "output/Json.h"
#include "output/QualifierMeaning.h"
#include "output/TypeText.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;

/// What a property, a method or a parameter begins with.
JsonObject ElementJson(const std::string& name, const std::string& type, bool isArray) {
    JsonObject object;
    object.Add("name", JsonText(name)).Add("type", JsonText(type)).Add("array", JsonValue(isArray));
    return object;
}

// --- What the server says ---

std::string QualifiersJson(const std::vector<RemoteQualifier>& qualifiers) {
    JsonObject object;
    for (const RemoteQualifier& qualifier : qualifiers) {
        object.Add(qualifier.name, JsonValue(qualifier.value));
    }
    return object.Text();
}

JsonObject ElementJson(const std::string& name, const RemoteType& type) {
    JsonObject object = ElementJson(name, type.name, type.isArray);
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

std::string MethodJson(const RemoteMethod& method) {
    JsonArray parameters;
    for (const RemoteParameter& parameter : method.parameters) {
        parameters.Add(ElementJson(parameter.name, parameter.type)
                           .Add("direction", JsonText(DirectionOf(parameter)))
                           .Add("qualifiers", QualifiersJson(parameter.qualifiers))
                           .Text());
    }
    return FeatureJson(ElementJson(method.name, method.type).Add("parameters", parameters.Text()), method);
}

// --- What the object model has ---

std::string QualifiersJson(const ICIMNamedElement& element) {
    JsonObject qualifiers;
    element.EnumerateQualifiers(
        [&](const boost::shared_ptr<ICIMQualifier>& qualifier) {
            qualifiers.Add(qualifier->GetName(TCIMContext()), JsonValue(qualifier->GetValue(TCIMContext())));
            return true;
        },
        TCIMContext());
    return qualifiers.Text();
}

template <typename Declaration>
JsonObject DeclarationJson(const Declaration& declaration) {
    return ElementJson(declaration.GetName(TCIMContext()), ElementTypeText(declaration.GetType(TCIMContext())),
                       declaration.IsArray(TCIMContext()));
}

std::string PropertiesJson(const ICIMClass& cls) {
    JsonArray properties;
    cls.EnumeratePropertyDecls(
        [&](const boost::shared_ptr<ICIMPropertyDecl>& property) {
            properties.Add(DeclarationJson(*property).Add("qualifiers", QualifiersJson(*property)).Text());
            return true;
        },
        TCIMContext());
    return properties.Text();
}

std::string ParametersJson(const ICIMMethodDecl& method) {
    JsonArray parameters;
    boost::function<bool(boost::shared_ptr<ICIMParameterDecl>)> add =
        [&](const boost::shared_ptr<ICIMParameterDecl>& parameter) {
            parameters.Add(DeclarationJson(*parameter).Text());
            return true;
        };
    method.EnumerateParameterDecls(add, TCIMContext());
    return parameters.Text();
}

std::string MethodsJson(const ICIMClass& cls) {
    JsonArray methods;
    cls.EnumerateMethodDecls(
        [&](const boost::shared_ptr<ICIMMethodDecl>& method) {
            methods.Add(JsonObject()
                            .Add("name", JsonText(method->GetName(TCIMContext())))
                            .Add("type", JsonText(ElementTypeText(method->GetReturnType(TCIMContext()))))
                            .Add("parameters", ParametersJson(*method))
                            .Add("qualifiers", QualifiersJson(*method))
                            .Text());
            return true;
        },
        TCIMContext());
    return methods.Text();
}

} // namespace

std::string ClassJson(const RemoteClass& cls) {
    JsonArray properties;
    for (const RemoteProperty& property : cls.properties) {
        properties.Add(FeatureJson(
            ElementJson(property.name, property.type).Add("default", JsonValue(property.defaultValue)), property));
    }
    return JsonObject()
        .Add("name", JsonText(cls.name))
        .Add("superclass", cls.superclass.empty() ? "null" : JsonText(cls.superclass))
        .Add("qualifiers", QualifiersJson(cls.qualifiers))
        .Add("properties", properties.Text())
        .Add("methods", MethodsJson(cls))
        .Text();
}

std::string MethodsJson(const RemoteClass& cls) {
    JsonArray methods;
    for (const RemoteMethod& method : cls.methods) {
        methods.Add(MethodJson(method));
    }
    return methods.Text();
}

std::string ClassMembersJson(const ICIMClass& cls) {
    return "\"name\":" + JsonText(cls.GetName(TCIMContext())) + ",\n\"qualifiers\":" + QualifiersJson(cls) +
           ",\n\"properties\":" + PropertiesJson(cls) + ",\n\"methods\":" + MethodsJson(cls);
}

} // namespace cimhttp
