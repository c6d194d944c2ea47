#pragma once

#include "schema/CimType.h"
#include "schema/Value.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace demo {

/// What qualifiers can stand on (DSP0004, meta elements).
enum class Scope { kClass, kAssociation, kReference, kProperty, kMethod, kParameter, kIndication };

/// A qualifier type: what the qualifiers of its name hold, where they may stand and how they are inherited.
struct QualifierDeclaration {
    std::string name;
    CimType type = CimType::kString;
    bool isArray = false;
    std::optional<unsigned> arraySize;
    std::set<Scope> scopes;
    bool overridable = true;
    bool toSubclass = true;
    bool toInstance = false;
    bool translatable = false;
    Value defaultValue;
};

/// A qualifier on an element. The declaration belongs to the schema.
struct Qualifier {
    const QualifierDeclaration* declaration = nullptr;
    Value value;
    bool propagated = false;
};

/// What properties, methods and parameters have in common.
struct Element {
    std::string name;
    CimType type = CimType::kString;
    std::vector<Qualifier> qualifiers;

    /// The qualifier of that name, null if the element has none.
    const Qualifier* FindQualifier(std::string_view qualifierName) const;

    /// Whether the element has a boolean qualifier of that name that is true.
    bool Is(std::string_view qualifierName) const;
};

/// A property or parameter: an element that holds a value.
struct Holder : Element {
    bool isArray = false;
    std::optional<unsigned> arraySize;
    /// The class that a reference refers to; may be empty, which is any class.
    std::string referenceClass;
};

struct Property : Holder {
    Value defaultValue;
    /// The class that introduces the property; an override keeps it.
    std::string classOrigin;
    /// Whether the property comes from a superclass unchanged.
    bool propagated = false;
};

using Parameter = Holder;

struct Method : Element {
    std::vector<Parameter> parameters;
    std::string classOrigin;
    bool propagated = false;
};

/// A class with everything that it inherits.
struct Class : Element {
    std::string superclass;
    std::vector<Property> properties;
    std::vector<Method> methods;

    /// The property of that name, null if the class has none.
    const Property* FindProperty(std::string_view propertyName) const;
};

} // namespace demo
