#include "output/InstanceJson.h"

#include "access/PluginAccess.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMPropertyDecl.h"
#include "output/Json.h"
#include "output/TypeText.h"
#include "text/TextBuffer.h"

#include <utility>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

/// A property up to its value.
std::string Head(const ICIMPropertyDecl& declaration) {
    return JsonText(declaration.GetName(TCIMContext())) +
           ":{\"type\":" + JsonText(ElementTypeText(declaration.GetType(TCIMContext()))) + ",\"value\":";
}

std::string ObjectsJson(const std::vector<EmbeddedObject>& objects, bool isArray);

std::string PropertyJson(const EmbeddedObject::Property& property) {
    return property.objects.empty() ? JsonValue(property.value)
                                    : ObjectsJson(property.objects, property.value.IsArray());
}

std::string OneJson(const EmbeddedObject& object) {
    if (object.className.empty()) {
        return "null";
    }
    JsonObject properties;
    for (const EmbeddedObject::Property& property : object.properties) {
        properties.Add(property.name, PropertyJson(property));
    }
    return JsonObject().Add("class", JsonText(object.className)).Add("properties", properties.Text()).Text();
}

/// Embedded objects: one or, of an array, an array of them.
std::string ObjectsJson(const std::vector<EmbeddedObject>& objects, bool isArray) {
    return isArray ? JsonArray(objects, OneJson) : OneJson(objects.front());
}

} // namespace

InstanceJson::InstanceJson(PropertySelector selector, const ValueTexts& texts, std::string nameSpace)
    : values_(std::move(selector)), shown_(texts), nameSpace_(std::move(nameSpace)) {}

void InstanceJson::Append(ICIMInstance& instance, TextBuffer& json) {
    json.Add('{');
    AppendMembers(instance, json);
    json.Add('}');
}

void InstanceJson::AppendMembers(ICIMInstance& instance, TextBuffer& json) {
    if (values_.TurnTo(instance)) {
        PrepareClass();
    }
    hasObjects_ = shown_.Access().HasEmbeddedObjects(instance);
    json.Add("\"path\":");
    AppendJsonText(PathOf(instance, nameSpace_), json);
    json.Add(classJson_);
    values_.Visit([&](std::size_t place, const TCIMValue& value) { AppendProperty(instance, place, value, json); });
    json.Add('}');
}

void InstanceJson::AppendProperty(const ICIMInstance& instance, std::size_t place, const TCIMValue& value,
                                  TextBuffer& json) {
    const Member& member = members_[place];
    const SelectedValues::Declaration& declaration = values_.Declarations()[place];
    json.Add(member.head);
    const std::size_t begin = json.Size();
    AppendJsonValue(value, json);
    const std::size_t end = json.Size();
    json.Add(",\"text\":");
    if (!member.showsAsItIs || !ShowsAsItIs(value)) {
        shown_.TurnTo(instance, declaration, value);
        shown_.AppendJson(json);
    } else if (value.GetType() == TCIMValue::TCIMType::eCIMString) {
        json.AddAgain(begin, end);
    } else {
        json.Add('"');
        json.AddAgain(begin, end);
        json.Add('"');
    }
    if (hasObjects_) {
        AppendObjects(instance, declaration->GetName(TCIMContext()), value, json);
    }
    json.Add('}');
}

void InstanceJson::AppendObjects(const ICIMInstance& instance, const std::string& property, const TCIMValue& value,
                                 TextBuffer& json) const {
    const TCIMValue::TCIMType type = value.GetType();
    const bool mayBeObjects = type == TCIMValue::TCIMType::eCIMString || type == TCIMValue::TCIMType::eCIMStringArray;
    if (!mayBeObjects || value.IsNull()) {
        return;
    }
    const auto objects = shown_.Access().EmbeddedObjects(instance, property);
    if (!objects.empty()) {
        json.Add(",\"object\":");
        json.Add(ObjectsJson(objects, value.IsArray()));
    }
}

void InstanceJson::PrepareClass() {
    classJson_ = ",\"class\":" + JsonText(values_.Class().GetName(TCIMContext())) + ",\"properties\":{";
    members_.clear();
    for (const auto& declaration : values_.Declarations()) {
        members_.push_back(
            {(members_.empty() ? "" : ",") + Head(*declaration), shown_.Access().ShowsAsItIs(*declaration)});
    }
}

} // namespace cimhttp
