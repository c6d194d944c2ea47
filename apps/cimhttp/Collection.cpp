#include "Collection.h"

#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>

#include "DisplayText.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMMethodDecl.h"
#include "host/ICIMParameterDecl.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ICIMQualifier.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using ECIMType = TCIMValue::TCIMType::ECIMType;
using Json = nlohmann::ordered_json;

constexpr unsigned char kDecimal = 10;

std::string Written(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

std::string TypeName(TCIMValue::TCIMType type) {
    std::ostringstream name;
    name << TCIMValue::TCIMType(static_cast<ECIMType>(type & ~ECIMType::eCIMArrayUnknown));
    return name.str();
}

/// The number nearest to a real's shortest text. A real32 so keeps its few digits, and still reads back the same.
Json RealJson(const TCIMValue& value) {
    const std::string text = value.ToString(kDecimal);
    double number = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
    return end.ec == std::errc() && std::isfinite(number) ? Json(number) : Json(text);
}

Json ScalarJson(const TCIMValue& value) {
    switch (value.GetType()) {
    case ECIMType::eCIMBoolean:
        return static_cast<bool>(value);
    case ECIMType::eCIMUint8:
    case ECIMType::eCIMUint16:
    case ECIMType::eCIMUint32:
    case ECIMType::eCIMUint64:
        return static_cast<unsigned long long>(value);
    case ECIMType::eCIMSint8:
    case ECIMType::eCIMSint16:
    case ECIMType::eCIMSint32:
    case ECIMType::eCIMSint64:
        return static_cast<long long>(value);
    case ECIMType::eCIMReal32:
    case ECIMType::eCIMReal64:
        return RealJson(value);
    default:
        return value.ToString(kDecimal);
    }
}

Json ValueJson(const TCIMValue& value) {
    if (value.IsNull()) {
        return nullptr;
    }
    if (!value.IsArray()) {
        return ScalarJson(value);
    }
    Json elements = Json::array();
    for (const TCIMValue& element : static_cast<const std::vector<TCIMValue>&>(value)) {
        elements.push_back(ValueJson(element));
    }
    return elements;
}

Json QualifiersJson(const ICIMNamedElement& element) {
    Json qualifiers = Json::object();
    element.EnumerateQualifiers(
        [&](const boost::shared_ptr<ICIMQualifier>& qualifier) {
            qualifiers[qualifier->GetName(TCIMContext())] = ValueJson(qualifier->GetValue(TCIMContext()));
            return true;
        },
        TCIMContext());
    return qualifiers;
}

Json PropertiesJson(const ICIMClass& cls) {
    Json properties = Json::array();
    cls.EnumeratePropertyDecls(
        [&](const boost::shared_ptr<ICIMPropertyDecl>& property) {
            properties.push_back({{"name", property->GetName(TCIMContext())},
                                  {"type", TypeName(property->GetType(TCIMContext()))},
                                  {"array", property->IsArray(TCIMContext())},
                                  {"qualifiers", QualifiersJson(*property)}});
            return true;
        },
        TCIMContext());
    return properties;
}

Json ParametersJson(const ICIMMethodDecl& method) {
    Json parameters = Json::array();
    boost::function<bool(boost::shared_ptr<ICIMParameterDecl>)> add =
        [&](const boost::shared_ptr<ICIMParameterDecl>& parameter) {
            parameters.push_back({{"name", parameter->GetName(TCIMContext())},
                                  {"type", TypeName(parameter->GetType(TCIMContext()))},
                                  {"array", parameter->IsArray(TCIMContext())}});
            return true;
        };
    method.EnumerateParameterDecls(add, TCIMContext());
    return parameters;
}

Json MethodsJson(const ICIMClass& cls) {
    Json methods = Json::array();
    cls.EnumerateMethodDecls(
        [&](const boost::shared_ptr<ICIMMethodDecl>& method) {
            methods.push_back({{"name", method->GetName(TCIMContext())},
                               {"type", TypeName(method->GetReturnType(TCIMContext()))},
                               {"parameters", ParametersJson(*method)},
                               {"qualifiers", QualifiersJson(*method)}});
            return true;
        },
        TCIMContext());
    return methods;
}

Json TextJson(const DisplayText& text) { return text.IsList() ? Json(text.Texts()) : Json(text.Joined()); }

Json InstanceJson(ICIMInstance& instance, const PluginAccess& access) {
    Json properties = Json::object();
    instance.EnumerateProperties(
        [&](const boost::shared_ptr<ICIMProperty>& property) {
            const auto declaration = property->GetDeclaration(TCIMContext());
            properties[declaration->GetName(TCIMContext())] = {{"type", TypeName(declaration->GetType(TCIMContext()))},
                                                               {"value", ValueJson(property->GetValue(TCIMContext()))},
                                                               {"text", TextJson(DisplayText(access, *property))}};
            return true;
        },
        TCIMContext());
    return {{"path", instance.BuildPath(TCIMContext()).GetPath()}, {"properties", std::move(properties)}};
}

/// Puts a comma before every item of a list but the first, and each on a line of its own.
class Separator {
  public:
    explicit Separator(std::ostream& output) : output_(output) {}

    void BeginItem() {
        output_ << (is_first_ ? "\n" : ",\n");
        is_first_ = false;
    }

  private:
    std::ostream& output_;
    bool is_first_ = true;
};

// Only one instance at a time is built in memory.
void WriteClass(const Collection::Class& cls, const PluginAccess& access, std::ostream& output) {
    const ICIMClass& definition = *cls.definition;
    output << "{\"name\":" << Written(definition.GetName(TCIMContext())) << ",\n"
           << "\"qualifiers\":" << Written(QualifiersJson(definition)) << ",\n"
           << "\"properties\":" << Written(PropertiesJson(definition)) << ",\n"
           << "\"methods\":" << Written(MethodsJson(definition)) << ",\n"
           << "\"instances\":[";
    Separator separator(output);
    for (const auto& instance : cls.instances) {
        separator.BeginItem();
        output << Written(InstanceJson(*instance, access));
    }
    output << "]}";
}

} // namespace

void WriteJson(const Collection& collection, const PluginAccess& access, std::ostream& output) {
    output << "{\"server\":" << Written(collection.server) << ",\n\"complete\":" << Written(collection.complete)
           << ",\n\"classes\":[";
    Separator separator(output);
    for (const Collection::Class& cls : collection.classes) {
        separator.BeginItem();
        WriteClass(cls, access, output);
    }
    output << "]}\n";
}

} // namespace cimhttp
