#include "schema/Declarations.h"

#include "schema/Names.h"

#include <algorithm>

namespace demo {

const Qualifier* Element::FindQualifier(std::string_view qualifierName) const {
    const auto found = std::find_if(qualifiers.begin(), qualifiers.end(), [&](const Qualifier& qualifier) {
        return SameName(qualifier.declaration->name, qualifierName);
    });
    return found == qualifiers.end() ? nullptr : &*found;
}

bool Element::Is(std::string_view qualifierName) const {
    const Qualifier* const qualifier = FindQualifier(qualifierName);
    const std::string* const text = qualifier ? qualifier->value.AsText() : nullptr;
    return text && SameName(*text, "true");
}

const Property* Class::FindProperty(std::string_view propertyName) const {
    const auto found = std::find_if(properties.begin(), properties.end(),
                                    [&](const Property& property) { return SameName(property.name, propertyName); });
    return found == properties.end() ? nullptr : &*found;
}

} // namespace demo
