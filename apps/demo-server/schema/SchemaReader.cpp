#include "schema/SchemaReader.h"

#include "schema/EmbeddedSchema.h"

#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <utility>

namespace demo {

namespace {

struct NamedScope {
    Scope scope;
    const char* attribute;
};

constexpr std::array kScopes{
    NamedScope{Scope::kClass, "CLASS"},           NamedScope{Scope::kAssociation, "ASSOCIATION"},
    NamedScope{Scope::kReference, "REFERENCE"},   NamedScope{Scope::kProperty, "PROPERTY"},
    NamedScope{Scope::kMethod, "METHOD"},         NamedScope{Scope::kParameter, "PARAMETER"},
    NamedScope{Scope::kIndication, "INDICATION"},
};

bool IsTrue(const pugi::xml_attribute& attribute, bool otherwise) {
    return attribute ? SameName(attribute.value(), "true") : otherwise;
}

/// The kinds of property and parameter elements, by the end of their names.
bool IsArrayElement(const pugi::xml_node& node) {
    const std::string_view name = node.name();
    return name == "PROPERTY.ARRAY" || name == "PARAMETER.ARRAY" || name == "PARAMETER.REFARRAY";
}

bool IsReferenceElement(const pugi::xml_node& node) {
    const std::string_view name = node.name();
    return name == "PROPERTY.REFERENCE" || name == "PARAMETER.REFERENCE" || name == "PARAMETER.REFARRAY";
}

bool IsPropertyElement(const pugi::xml_node& node) { return std::string_view(node.name()).substr(0, 8) == "PROPERTY"; }

bool IsParameterElement(const pugi::xml_node& node) {
    return std::string_view(node.name()).substr(0, 9) == "PARAMETER";
}

/// Reads the document, class by class: a superclass ahead of its subclasses wherever it stands.
class Reader {
  public:
    Schema Read(std::string_view document) {
        const auto parsed = document_.load_buffer(document.data(), document.size());
        if (!parsed)
            throw SchemaError("not well-formed at offset " + std::to_string(parsed.offset) + ": " +
                              parsed.description());
        const auto declaration = document_.child("CIM").child("DECLARATION");
        if (!declaration)
            throw SchemaError("not a CIM-XML declaration: it has no element CIM/DECLARATION");
        for (const auto& group : declaration.children("DECLGROUP"))
            for (const auto& object : group.children("VALUE.OBJECT"))
                Collect(object);
        for (const auto& [name, node] : classNodes_)
            Resolve(name);
        CheckClassNames();
        return std::move(schema_);
    }

  private:
    [[noreturn]] void Fail(const std::string& what) const { throw SchemaError(where_ + ": " + what); }

    void Collect(const pugi::xml_node& parent);
    void AddQualifierDeclaration(const pugi::xml_node& node);
    const Class& Resolve(std::string_view name);
    void ReadClass(const pugi::xml_node& node, Class& result);
    void AddProperty(const pugi::xml_node& node, Class& result);
    void AddMethod(const pugi::xml_node& node, Class& result);
    void ReadHolder(const pugi::xml_node& node, Holder& result) const;
    std::vector<Qualifier> ReadQualifiers(const pugi::xml_node& node, Scope scope,
                                          std::vector<Qualifier> inherited) const;
    Qualifier ReadQualifier(const pugi::xml_node& node, Scope scope) const;
    Value ReadValue(const pugi::xml_node& node, CimType type, bool isArray) const;
    CimType ReadType(const pugi::xml_node& node) const;
    std::string RequiredName(const pugi::xml_node& node) const;
    void CheckValueMap(const Element& element) const;
    void CheckOverride(const Element& element, bool overrides) const;
    void CheckClassNames();
    void CheckClassName(const std::string& name) const;

    pugi::xml_document document_;
    std::map<std::string, pugi::xml_node, NameLess> classNodes_;
    std::set<std::string, NameLess> inProgress_;
    std::string where_ = "schema";
    Schema schema_;
};

/// The qualifiers of a superclass's element that its subclasses inherit.
std::vector<Qualifier> Propagated(const std::vector<Qualifier>& qualifiers) {
    std::vector<Qualifier> result;
    for (const auto& qualifier : qualifiers)
        if (qualifier.declaration->toSubclass)
            result.push_back({qualifier.declaration, qualifier.value, true});
    return result;
}

template <typename Inheritable>
void MarkInherited(std::vector<Inheritable>& elements) {
    for (auto& element : elements) {
        element.propagated = true;
        element.qualifiers = Propagated(element.qualifiers);
    }
}

template <typename Named>
auto FindNamed(std::vector<Named>& elements, std::string_view name) {
    return std::find_if(elements.begin(), elements.end(),
                        [&](const Named& element) { return SameName(element.name, name); });
}

void Reader::Collect(const pugi::xml_node& parent) {
    for (const auto& node : parent.children()) {
        const std::string_view kind = node.name();
        if (kind == "QUALIFIER.DECLARATION")
            AddQualifierDeclaration(node);
        else if (kind != "CLASS")
            Fail("unexpected element " + std::string(kind));
        else if (!classNodes_.emplace(RequiredName(node), node).second)
            Fail("class " + RequiredName(node) + " is declared twice");
    }
}

void Reader::AddQualifierDeclaration(const pugi::xml_node& node) {
    QualifierDeclaration declaration;
    declaration.name = RequiredName(node);
    where_ = "qualifier declaration " + declaration.name;
    if (schema_.FindQualifier(declaration.name))
        Fail("declared twice");
    declaration.type = ReadType(node);
    declaration.isArray = IsTrue(node.attribute("ISARRAY"), false);
    declaration.overridable = IsTrue(node.attribute("OVERRIDABLE"), true);
    declaration.toSubclass = IsTrue(node.attribute("TOSUBCLASS"), true);
    declaration.toInstance = IsTrue(node.attribute("TOINSTANCE"), false);
    declaration.translatable = IsTrue(node.attribute("TRANSLATABLE"), false);
    for (const auto& [scope, attribute] : kScopes)
        if (IsTrue(node.child("SCOPE").attribute(attribute), false))
            declaration.scopes.insert(scope);
    declaration.defaultValue = ReadValue(node, declaration.type, declaration.isArray);
    schema_.Add(std::move(declaration));
    where_ = "schema";
}

const Class& Reader::Resolve(std::string_view name) {
    if (const Class* const known = schema_.FindClass(name))
        return *known;
    const auto node = classNodes_.find(name);
    if (node == classNodes_.end())
        Fail("superclass " + std::string(name) + " is not declared");
    if (!inProgress_.insert(node->first).second)
        Fail("class " + node->first + " is its own superclass");

    Class result;
    result.name = node->first;
    result.superclass = node->second.attribute("SUPERCLASS").value();
    where_ = "class " + result.name;
    if (!result.superclass.empty()) {
        const Class& superclass = Resolve(result.superclass);
        result.superclass = superclass.name;
        result.properties = superclass.properties;
        result.methods = superclass.methods;
        result.qualifiers = Propagated(superclass.qualifiers);
        MarkInherited(result.properties);
        MarkInherited(result.methods);
    }
    where_ = "class " + result.name;
    ReadClass(node->second, result);
    return schema_.Add(std::move(result));
}

void Reader::ReadClass(const pugi::xml_node& node, Class& result) {
    // Association is what makes a class an association, so it decides about the scope of the others.
    const bool isAssociation =
        result.Is("Association") || node.find_child_by_attribute("QUALIFIER", "NAME", "Association");
    result.qualifiers =
        ReadQualifiers(node, isAssociation ? Scope::kAssociation : Scope::kClass, std::move(result.qualifiers));
    std::set<std::string, NameLess> declared;
    for (const auto& child : node.children()) {
        if (std::string_view(child.name()) == "QUALIFIER")
            continue;
        where_ = "class " + result.name + ", " + child.name() + ' ' + RequiredName(child);
        if (!declared.insert(RequiredName(child)).second)
            Fail("declared twice");
        if (IsPropertyElement(child))
            AddProperty(child, result);
        else if (std::string_view(child.name()) == "METHOD")
            AddMethod(child, result);
        else
            Fail("unexpected element");
    }
}

void Reader::AddProperty(const pugi::xml_node& node, Class& result) {
    Property property;
    ReadHolder(node, property);
    property.classOrigin = result.name;
    const auto inherited = FindNamed(result.properties, property.name);
    const bool overrides = inherited != result.properties.end();
    property.qualifiers =
        ReadQualifiers(node, property.type == CimType::kReference ? Scope::kReference : Scope::kProperty,
                       overrides ? inherited->qualifiers : std::vector<Qualifier>());
    CheckOverride(property, overrides);
    CheckValueMap(property);
    property.defaultValue = ReadValue(node, property.type, property.isArray);
    if (!overrides) {
        result.properties.push_back(std::move(property));
        return;
    }
    if (inherited->type != property.type || inherited->isArray != property.isArray)
        Fail("an override cannot change the type");
    property.classOrigin = inherited->classOrigin;
    *inherited = std::move(property);
}

void Reader::AddMethod(const pugi::xml_node& node, Class& result) {
    Method method;
    method.name = RequiredName(node);
    method.type = ReadType(node);
    method.classOrigin = result.name;
    const auto inherited = FindNamed(result.methods, method.name);
    const bool overrides = inherited != result.methods.end();
    method.qualifiers =
        ReadQualifiers(node, Scope::kMethod, overrides ? inherited->qualifiers : std::vector<Qualifier>());
    CheckOverride(method, overrides);
    CheckValueMap(method);
    for (const auto& child : node.children()) {
        if (!IsParameterElement(child))
            continue;
        Parameter parameter;
        ReadHolder(child, parameter);
        parameter.qualifiers = ReadQualifiers(child, Scope::kParameter, {});
        CheckValueMap(parameter);
        if (FindNamed(method.parameters, parameter.name) != method.parameters.end())
            Fail("parameter " + parameter.name + " is declared twice");
        method.parameters.push_back(std::move(parameter));
    }
    if (!overrides) {
        result.methods.push_back(std::move(method));
        return;
    }
    method.classOrigin = inherited->classOrigin;
    *inherited = std::move(method);
}

void Reader::ReadHolder(const pugi::xml_node& node, Holder& result) const {
    result.name = RequiredName(node);
    result.isArray = IsArrayElement(node);
    if (const auto size = node.attribute("ARRAYSIZE"))
        result.arraySize = size.as_uint();
    if (IsReferenceElement(node)) {
        result.type = CimType::kReference;
        result.referenceClass = node.attribute("REFERENCECLASS").value();
    } else {
        result.type = ReadType(node);
    }
}

std::vector<Qualifier> Reader::ReadQualifiers(const pugi::xml_node& node, Scope scope,
                                              std::vector<Qualifier> inherited) const {
    std::vector<Qualifier> result = std::move(inherited);
    std::set<std::string, NameLess> declared;
    for (const auto& child : node.children("QUALIFIER")) {
        Qualifier qualifier = ReadQualifier(child, scope);
        const std::string& name = qualifier.declaration->name;
        if (!declared.insert(name).second)
            Fail("qualifier " + name + " is declared twice");
        const auto overridden = std::find_if(result.begin(), result.end(), [&](const Qualifier& known) {
            return known.declaration == qualifier.declaration;
        });
        if (overridden == result.end())
            result.push_back(std::move(qualifier));
        else if (qualifier.declaration->overridable)
            *overridden = std::move(qualifier);
        else
            Fail("qualifier " + name + " is inherited and cannot be overridden");
    }
    return result;
}

Qualifier Reader::ReadQualifier(const pugi::xml_node& node, Scope scope) const {
    const std::string name = RequiredName(node);
    const QualifierDeclaration* const declaration = schema_.FindQualifier(name);
    if (!declaration)
        Fail("qualifier " + name + " has no declaration");
    const bool isInScope = declaration->scopes.count(scope) != 0 ||
                           // An association is a class, too.
                           (scope == Scope::kAssociation && declaration->scopes.count(Scope::kClass) != 0);
    if (!isInScope)
        Fail("qualifier " + name + " is not meant for this kind of element");
    if (ReadType(node) != declaration->type)
        Fail("qualifier " + name + " has another type than its declaration");
    return {declaration, ReadValue(node, declaration->type, declaration->isArray), false};
}

Value Reader::ReadValue(const pugi::xml_node& node, CimType type, bool isArray) const {
    const auto read = [&](const pugi::xml_node& value) -> std::string {
        std::string text = value.text().get();
        if (!IsValueOf(type, text))
            Fail('"' + text + "\" is no " + std::string(TypeName(type)));
        return text;
    };
    const auto scalar = node.child("VALUE");
    const auto array = node.child("VALUE.ARRAY");
    if ((scalar && isArray) || (array && !isArray))
        Fail(isArray ? "an array must have a VALUE.ARRAY" : "a scalar must have a VALUE");
    if (scalar)
        return Value::Text(read(scalar));
    if (!array)
        return {};
    Value::Items items;
    for (const auto& item : array.children())
        items.push_back(std::string_view(item.name()) == "VALUE.NULL" ? std::nullopt : std::optional(read(item)));
    return Value::Array(std::move(items));
}

CimType Reader::ReadType(const pugi::xml_node& node) const {
    const std::string_view name = node.attribute("TYPE").value();
    const auto type = TypeFromName(name);
    if (!type || *type == CimType::kReference)
        Fail('"' + std::string(name) + "\" is no type");
    return *type;
}

std::string Reader::RequiredName(const pugi::xml_node& node) const {
    std::string name = node.attribute("NAME").value();
    if (name.empty())
        Fail(std::string("an element ") + node.name() + " without a name");
    return name;
}

/// Values and ValueMap go side by side (DSP0004).
void Reader::CheckValueMap(const Element& element) const {
    const Qualifier* const map = element.FindQualifier("ValueMap");
    const Qualifier* const values = element.FindQualifier("Values");
    if (!map || !values || !map->value.AsArray() || !values->value.AsArray())
        return;
    if (map->value.AsArray()->size() != values->value.AsArray()->size())
        Fail(element.name + ": ValueMap and Values are of different lengths");
}

void Reader::CheckOverride(const Element& element, bool overrides) const {
    const bool isMarked = element.FindQualifier("Override") != nullptr;
    if (isMarked && !overrides)
        Fail("Override, but no superclass has this element");
    if (overrides && !isMarked)
        Fail("a superclass has this element, so that it needs the qualifier Override");
}

/// Classes can refer to each other in any order, so that their names are checked when all are known.
void Reader::CheckClassNames() {
    for (const auto& [name, node] : classNodes_) {
        const Class& declaration = *schema_.FindClass(name);
        for (const auto& property : declaration.properties) {
            where_ = "class " + name + ", " + property.name;
            CheckClassName(property.referenceClass);
            if (const Qualifier* const embedded = property.FindQualifier("EmbeddedInstance"))
                CheckClassName(*embedded->value.AsText());
        }
        for (const auto& method : declaration.methods)
            for (const auto& parameter : method.parameters) {
                where_ = "class " + name + ", " + method.name + ", " + parameter.name;
                CheckClassName(parameter.referenceClass);
            }
    }
}

void Reader::CheckClassName(const std::string& name) const {
    if (!name.empty() && !schema_.FindClass(name))
        Fail("refers to class " + name + ", which is not declared");
}

} // namespace

Schema ReadSchema(std::string_view document) { return Reader().Read(document); }

Schema BuiltInSchema() { return ReadSchema(EmbeddedSchema()); }

} // namespace demo
