#include "schema/DeclaredValue.h"

#include "schema/SchemaDocuments.h"
#include "schema/XmlCharacters.h"

#include <pugixml.hpp>

namespace demo {

namespace {

std::string ReadText(const pugi::xml_node& value, CimType type) {
    if (std::string_view(value.name()) != "VALUE") {
        throw DeclarationError(std::string("element ") + value.name() + " is no value");
    }
    std::string text = value.text().get();
    if (!IsXmlText(text)) {
        throw DeclarationError("a value has a character that XML does not have");
    }
    if (!IsValueOf(type, text)) {
        throw DeclarationError('"' + text + "\" is no " + std::string(TypeName(type)));
    }
    return text;
}

} // namespace

Value ReadDeclaredValue(const pugi::xml_node& holder, CimType type, bool isArray) {
    const auto scalar = holder.child("VALUE");
    const auto array = holder.child("VALUE.ARRAY");
    if ((scalar && isArray) || (array && !isArray)) {
        throw DeclarationError(isArray ? "an array must have a VALUE.ARRAY" : "a scalar must have a VALUE");
    }
    if (scalar) {
        return Value::Text(ReadText(scalar, type));
    }
    if (!array) {
        return {};
    }
    Value::Items items;
    for (const auto& item : Elements(array)) {
        items.push_back(std::string_view(item.name()) == "VALUE.NULL" ? std::nullopt
                                                                      : std::optional(ReadText(item, type)));
    }
    return Value::Array(std::move(items));
}

CimType ReadDeclaredType(const pugi::xml_node& element) {
    const std::string_view name = element.attribute("TYPE").value();
    const auto type = TypeFromName(name);
    if (!type || *type == CimType::kReference) {
        throw DeclarationError('"' + std::string(name) + "\" is no type");
    }
    return *type;
}

} // namespace demo
