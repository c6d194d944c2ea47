#include "output/ObjectJson.h"

#include "output/Json.h"

namespace cimhttp {

namespace {

using NQORVYX20::EmbeddedObject;

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

} // namespace

std::string ObjectsJson(const std::vector<EmbeddedObject>& objects, bool is_array) {
    if (!is_array) {
        return OneJson(objects.front());
    }
    JsonArray array;
    for (const EmbeddedObject& object : objects) {
        array.Add(OneJson(object));
    }
    return array.Text();
}

} // namespace cimhttp
