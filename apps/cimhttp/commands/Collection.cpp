#include "commands/Collection.h"

#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMMethodDecl.h"
#include "host/ICIMParameterDecl.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"
#include "output/InstanceJson.h"
#include "output/Json.h"
#include "output/TypeText.h"

#include <optional>
#include <ostream>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

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

/// The members that a property or parameter declaration begins with.
template <typename Declaration>
JsonObject DeclarationJson(const Declaration& declaration) {
    JsonObject object;
    object.Add("name", JsonText(declaration.GetName(TCIMContext())))
        .Add("type", JsonText(ElementTypeText(declaration.GetType(TCIMContext()))))
        .Add("array", declaration.IsArray(TCIMContext()) ? "true" : "false");
    return object;
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

/// Puts a comma before every item of a list but the first, and each on a line of its own.
class Separator {
  public:
    explicit Separator(std::ostream& output) : output_(output) {}

    void BeginItem() {
        output_ << (isFirst_ ? "\n" : ",\n");
        isFirst_ = false;
    }

  private:
    std::ostream& output_;
    bool isFirst_ = true;
};

// Only one instance at a time is built in memory.
void WriteClass(const Collection::Class& cls, const ValueTexts& texts, std::ostream& output) {
    const ICIMClass& definition = *cls.definition;
    output << "{\"name\":" << JsonText(definition.GetName(TCIMContext())) << ",\n"
           << "\"qualifiers\":" << QualifiersJson(definition) << ",\n"
           << "\"properties\":" << PropertiesJson(definition) << ",\n"
           << "\"methods\":" << MethodsJson(definition) << ",\n"
           << "\"instances\":[";
    InstanceJson instanceJson(PropertySelector(std::nullopt, PropertySelector::Order::kByName), texts);
    std::string json;
    Separator separator(output);
    for (const auto& instance : cls.instances) {
        json.clear();
        instanceJson.Append(*instance, json);
        separator.BeginItem();
        output << json;
    }
    output << "]}";
}

} // namespace

void WriteJson(const Collection& collection, const ValueTexts& texts, std::ostream& output) {
    output << "{\"server\":" << JsonText(collection.server) << ",\n\"classes\":[";
    Separator separator(output);
    for (const Collection::Class& cls : collection.classes) {
        separator.BeginItem();
        WriteClass(cls, texts, output);
    }
    output << "],\n\"complete\":" << (collection.complete ? "true" : "false") << "}\n";
}

} // namespace cimhttp
