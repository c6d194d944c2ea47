#include "output/InstanceJson.h"

#include "access/PluginAccess.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "output/Json.h"
#include "output/TypeText.h"

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

void InstanceJson::Append(const ICIMInstance& instance, std::string& json) {
    json += '{';
    AppendMembers(instance, json);
    json += '}';
}

void InstanceJson::AppendMembers(const ICIMInstance& instance, std::string& json) {
    const std::vector<Member>& members = MembersOf(instance);
    json += "\"path\":";
    AppendJsonText(PathOf(instance, nameSpace_), json);
    json += classJson_;
    for (const Member& member : members) {
        const auto property = instance.GetProperty(member.name, TCIMContext());
        json += member.head;
        AppendJsonValue(property->GetValue(TCIMContext()), json);
        json += ",\"text\":";
        texts_.Of(instance, *property).AppendJson(json);
        AppendObjects(instance, member.name, property->GetValue(TCIMContext()), json);
        json += '}';
    }
    json += '}';
}

void InstanceJson::AppendObjects(const ICIMInstance& instance, const std::string& property, const TCIMValue& value,
                                 std::string& json) const {
    const TCIMValue::TCIMType type = value.GetType();
    const bool mayBeObjects = type == TCIMValue::TCIMType::eCIMString || type == TCIMValue::TCIMType::eCIMStringArray;
    if (!mayBeObjects || value.IsNull()) {
        return;
    }
    const auto objects = texts_.Access().EmbeddedObjects(instance, property);
    if (!objects.empty()) {
        json += ",\"object\":";
        json += ObjectsJson(objects, value.IsArray());
    }
}

const std::vector<InstanceJson::Member>& InstanceJson::MembersOf(const ICIMInstance& instance) {
    auto cls = instance.GetClass(TCIMContext());
    if (cls != lastClass_) {
        classJson_ = ",\"class\":" + JsonText(cls->GetName(TCIMContext())) + ",\"properties\":{";
        members_.clear();
        for (const auto& declaration : selector_.PropertiesFor(instance)) {
            members_.push_back(
                {declaration->GetName(TCIMContext()), (members_.empty() ? "" : ",") + Head(*declaration)});
        }
        lastClass_ = std::move(cls);
    }
    return members_;
}

} // namespace cimhttp
