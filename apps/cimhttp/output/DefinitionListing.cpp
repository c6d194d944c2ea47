#include "output/DefinitionListing.h"

#include "output/Json.h"
#include "output/MofText.h"
#include "output/MofWriter.h"
#include "text/Names.h"

#include <algorithm>

namespace cimhttp {

namespace {

using NQORVYX20::TCIMValue;

constexpr unsigned char kDecimal = 10;

const RemoteQualifier* Find(const std::vector<RemoteQualifier>& qualifiers, const char* name) {
    const auto found = std::find_if(qualifiers.begin(), qualifiers.end(),
                                    [&](const RemoteQualifier& one) { return IsSameName(one.name, name); });
    return found == qualifiers.end() ? nullptr : &*found;
}

bool IsTrue(const std::vector<RemoteQualifier>& qualifiers, const char* name) {
    const RemoteQualifier* const qualifier = Find(qualifiers, name);
    return qualifier != nullptr && qualifier->value == TCIMValue(true);
}

bool IsFalse(const std::vector<RemoteQualifier>& qualifiers, const char* name) {
    const RemoteQualifier* const qualifier = Find(qualifiers, name);
    return qualifier != nullptr && qualifier->value == TCIMValue(false);
}

/// The first sentence of the description.
std::string Summary(const std::vector<RemoteQualifier>& qualifiers) {
    const RemoteQualifier* const description = Find(qualifiers, "Description");
    if (description == nullptr) {
        return {};
    }
    const std::string text = description->value.ToString(kDecimal);
    const std::size_t end = text.find_first_of(".\n");
    const bool is_end = end + 1 == text.size() || text.find_first_of(" \n", end) == end + 1;
    return end != std::string::npos && (is_end || text[end] == '\n') ? text.substr(0, end) : text;
}

std::string Joined(const std::vector<std::string>& words, const char* separator = ", ") {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : separator) + word;
    }
    return text;
}

std::string TypeText(const RemoteType& type) { return MofType(type) + MofArray(type); }

/// `in`, `out` or both, as the qualifiers In (true unless said) and Out (false unless said) tell.
std::string Direction(const RemoteParameter& parameter) {
    const bool isOut = IsTrue(parameter.qualifiers, "Out");
    if (IsFalse(parameter.qualifiers, "In")) {
        return isOut ? "out" : "";
    }
    return isOut ? "in out" : "in";
}

std::string ParametersText(const RemoteMethod& method) {
    std::vector<std::string> parameters;
    for (const RemoteParameter& parameter : method.parameters) {
        const std::string direction = Direction(parameter);
        parameters.push_back((direction == "in" || direction.empty() ? "" : direction + ' ') + MofType(parameter.type) +
                             ' ' + parameter.name + MofArray(parameter.type));
    }
    return Joined(parameters);
}

std::string ValueText(const TCIMValue& value) {
    if (!value.IsArray() || value.IsNull()) {
        return value.ToString(kDecimal);
    }
    std::vector<std::string> texts;
    for (const TCIMValue& element : static_cast<const std::vector<TCIMValue>&>(value)) {
        texts.push_back(element.ToString(kDecimal));
    }
    return Joined(texts);
}

std::string FlavorText(const RemoteFlavor& flavor) { return Joined(UnusualFlavors({{}, {}, flavor})); }

void AddQualifiers(const std::string& element, const std::vector<RemoteQualifier>& qualifiers, Listing& listing) {
    for (const RemoteQualifier& qualifier : qualifiers) {
        listing.AddRow(
            {element, qualifier.name, Cell(qualifier.value, ValueText(qualifier.value)), FlavorText(qualifier.flavor)});
    }
}

std::string QualifiersJson(const std::vector<RemoteQualifier>& qualifiers) {
    JsonObject object;
    for (const RemoteQualifier& qualifier : qualifiers) {
        object.Add(qualifier.name, JsonValue(qualifier.value));
    }
    return object.Text();
}

const char* Boolean(bool value) { return value ? "true" : "false"; }

JsonObject ElementJson(const std::string& name, const RemoteType& type) {
    JsonObject object;
    object.Add("name", JsonText(name)).Add("type", JsonText(type.name)).Add("array", Boolean(type.is_array));
    if (!type.referenceClass.empty()) {
        object.Add("class", JsonText(type.referenceClass));
    }
    return object;
}

template <typename Element>
std::string MemberJson(JsonObject object, const Element& element) {
    return object.Add("origin", JsonText(element.origin))
        .Add("inherited", Boolean(element.isInherited))
        .Add("qualifiers", QualifiersJson(element.qualifiers))
        .Text();
}

std::string MethodJson(const RemoteMethod& method) {
    JsonArray parameters;
    for (const RemoteParameter& parameter : method.parameters) {
        parameters.Add(ElementJson(parameter.name, parameter.type)
                           .Add("direction", JsonText(Direction(parameter)))
                           .Add("qualifiers", QualifiersJson(parameter.qualifiers))
                           .Text());
    }
    return MemberJson(ElementJson(method.name, method.type).Add("parameters", parameters.Text()), method);
}

} // namespace

Listing PropertyListing(const RemoteClass& cls) {
    Listing listing({Listing::Key("Property"),
                     {"Type"},
                     {"Key"},
                     {"From"},
                     {"Description", Listing::Align::kLeft, Listing::Importance::kHigh}});
    for (const RemoteProperty& property : cls.properties) {
        listing.AddRow({property.name, TypeText(property.type), IsTrue(property.qualifiers, "Key") ? "key" : "",
                        property.origin, Summary(property.qualifiers)});
    }
    return listing;
}

Listing MethodListing(const RemoteClass& cls) {
    Listing listing({Listing::Key("Method"),
                     {"Returns"},
                     Listing::Key("Parameters"),
                     {"From"},
                     {"Description", Listing::Align::kLeft, Listing::Importance::kHigh}});
    for (const RemoteMethod& method : cls.methods) {
        listing.AddRow(
            {method.name, MofType(method.type), ParametersText(method), method.origin, Summary(method.qualifiers)});
    }
    return listing;
}

Listing QualifierListing(const RemoteClass& cls) {
    Listing listing({Listing::Key("Element"), Listing::Key("Qualifier"), Listing::Key("Value"), {"Flavor"}});
    AddQualifiers(cls.name, cls.qualifiers, listing);
    for (const RemoteProperty& property : cls.properties) {
        AddQualifiers(property.name, property.qualifiers, listing);
    }
    for (const RemoteMethod& method : cls.methods) {
        AddQualifiers(method.name + "()", method.qualifiers, listing);
        for (const RemoteParameter& parameter : method.parameters) {
            AddQualifiers(method.name + '(' + parameter.name + ')', parameter.qualifiers, listing);
        }
    }
    return listing;
}

Listing DeclarationListing(const std::vector<RemoteQualifierDeclaration>& declarations) {
    Listing listing({Listing::Key("Qualifier"), {"Type"}, {"Default"}, {"Scope"}, {"Flavor"}});
    for (const RemoteQualifierDeclaration& declaration : declarations) {
        listing.AddRow({declaration.name, TypeText(declaration.type),
                        Cell(declaration.default_value, ValueText(declaration.default_value)),
                        Joined(declaration.scopes), FlavorText(declaration.flavor)});
    }
    return listing;
}

std::string ClassJson(const RemoteClass& cls) {
    JsonArray properties;
    for (const RemoteProperty& property : cls.properties) {
        properties.Add(MemberJson(
            ElementJson(property.name, property.type).Add("default", JsonValue(property.default_value)), property));
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

} // namespace cimhttp
