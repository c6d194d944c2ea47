#include "InstanceJson.h"

#include <sstream>

#include "DisplayText.h"
#include "Json.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"

namespace cimhttp {

namespace {

using namespace NQORVYX20;
using ECIMType = TCIMValue::TCIMType::ECIMType;

std::string ElementTypeName(TCIMValue::TCIMType type) {
    std::ostringstream name;
    name << TCIMValue::TCIMType(static_cast<ECIMType>(type & ~ECIMType::eCIMArrayUnknown));
    return name.str();
}

std::string PropertyJson(const ICIMProperty& property, TCIMValue::TCIMType type, const PluginAccess& access) {
    const DisplayText text(access, property);
    return JsonObject()
        .Add("type", JsonText(ElementTypeName(type)))
        .Add("value", JsonValue(property.GetValue(TCIMContext())))
        .Add("text", text.IsList() ? JsonTexts(text.Texts()) : JsonText(text.Joined()))
        .Text();
}

} // namespace

std::string InstanceJson(const ICIMInstance& instance,
                         const std::vector<boost::shared_ptr<ICIMPropertyDecl>>& properties,
                         const PluginAccess& access) {
    JsonObject values;
    for (const auto& declaration : properties) {
        const std::string& name = declaration->GetName(TCIMContext());
        values.Add(name, PropertyJson(*instance.GetProperty(name, TCIMContext()), declaration->GetType(TCIMContext()),
                                      access));
    }
    return JsonObject()
        .Add("path", JsonText(instance.BuildPath(TCIMContext()).GetPath()))
        .Add("properties", values.Text())
        .Text();
}

} // namespace cimhttp
