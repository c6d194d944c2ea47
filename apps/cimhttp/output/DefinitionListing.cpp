#include "output/DefinitionListing.h"

#include "output/DisplayText.h"
#include "output/MofWriter.h"
#include "output/QualifierMeaning.h"
#include "text/WordList.h"

namespace cimhttp {

namespace {

std::string TypeText(const RemoteType& type) { return MofType(type) + MofArray(type); }

std::string ParametersText(const RemoteMethod& method) {
    std::vector<std::string> parameters;
    for (const RemoteParameter& parameter : method.parameters) {
        const std::string direction = DirectionOf(parameter);
        parameters.push_back((direction == "in" || direction.empty() ? "" : direction + ' ') + MofType(parameter.type) +
                             ' ' + parameter.name + MofArray(parameter.type));
    }
    return Joined(parameters);
}

std::string FlavorText(const RemoteFlavor& flavor) { return Joined(UnusualFlavors(flavor)); }

void AddQualifiers(const std::string& element, const std::vector<RemoteQualifier>& qualifiers, Listing& listing) {
    for (const RemoteQualifier& qualifier : qualifiers) {
        listing.AddRow({element, qualifier.name, Cell(qualifier.value, Joined(PlainTexts(qualifier.value))),
                        FlavorText(qualifier.flavor)});
    }
}

} // namespace

Listing PropertyListing(const RemoteClass& cls) {
    Listing listing({Listing::Key("Property"),
                     {"Type"},
                     {"Key"},
                     {"From"},
                     {"Description", Listing::Align::kLeft, Listing::Importance::kHigh}});
    for (const RemoteProperty& property : cls.properties) {
        listing.AddRow({property.name, TypeText(property.type), IsKey(property) ? "key" : "", property.origin,
                        SummaryOf(property.qualifiers)});
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
            {method.name, MofType(method.type), ParametersText(method), method.origin, SummaryOf(method.qualifiers)});
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
                        Cell(declaration.defaultValue, Joined(PlainTexts(declaration.defaultValue))),
                        Joined(declaration.scopes), FlavorText(declaration.flavor)});
    }
    return listing;
}

} // namespace cimhttp
