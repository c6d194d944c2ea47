#include "schema/SchemaReader.h"

#include "schema/DeclaredValue.h"
#include "schema/Names.h"
#include "schema/XmlCharacters.h"

#include <pugixml.hpp>

#include <algorithm>
#include <array>
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

/// Reads the documents, class by class: a superclass ahead of its subclasses wherever it stands. What is wrong is
/// noted, and left out, so that all problems come to light at once.
class Reader {
  public:
    explicit Reader(const SchemaDocuments& documents) : documents_(documents) {}

    Schema Read() {
        for (const auto& object : documents_.Objects()) {
            Try(object, [&] { Collect(object); });
        }
        for (const auto& [name, node] : classNodes_) {
            Resolve(name);
        }
        CheckClassNames();
        if (!problems_.empty()) {
            throw SchemaError(std::move(problems_));
        }
        return std::move(schema_);
    }

  private:
    [[noreturn]] static void Fail(const std::string& what) { throw DeclarationError(what); }

    void Note(const pugi::xml_node& node, const std::string& what) {
        problems_.push_back(documents_.Where(node) + ": " + where_ + ": " + what);
    }

    /// Whether the action succeeds. If not, that is noted as a problem of the element.
    template <typename Action>
    bool Try(const pugi::xml_node& node, Action action) {
        try {
            action();
            return true;
        } catch (const DeclarationError& error) {
            Note(node, error.what());
            return false;
        }
    }

    void Collect(const pugi::xml_node& object);
    void AddQualifierDeclaration(const pugi::xml_node& node);
    const Class& Resolve(std::string_view name);
    void Inherit(const pugi::xml_node& node, Class& result);
    void ReadClass(const pugi::xml_node& node, Class& result);
    void ReadFeature(const pugi::xml_node& node, Class& result);
    void AddProperty(const pugi::xml_node& node, Class& result);
    void AddMethod(const pugi::xml_node& node, Class& result);
    std::vector<Qualifier> ReadQualifiers(const pugi::xml_node& node, Scope scope, std::vector<Qualifier> inherited);
    void AddQualifier(const pugi::xml_node& node, Scope scope, std::vector<Qualifier>& result) const;
    Qualifier ReadQualifier(const pugi::xml_node& node, Scope scope) const;
    void CheckOverride(const Element& element, bool overrides, bool isComplete) const;
    void CheckClassNames();
    void CheckClassName(const pugi::xml_node& node, const std::string& name);

    const SchemaDocuments& documents_;
    std::vector<std::string> problems_;
    std::map<std::string, pugi::xml_node, NameLess> classNodes_;
    std::set<std::string, NameLess> inProgress_;
    /// Classes that lack features, their own or inherited ones, because something was wrong with these.
    std::set<std::string, NameLess> incomplete_;
    std::string where_ = "schema";
    Schema schema_;
};

/// The qualifiers of a superclass's element that its subclasses inherit.
std::vector<Qualifier> Propagated(const std::vector<Qualifier>& qualifiers) {
    std::vector<Qualifier> result;
    for (const auto& qualifier : qualifiers) {
        if (qualifier.declaration->toSubclass) {
            result.push_back({qualifier.declaration, qualifier.value, true});
        }
    }
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

std::string RequiredName(const pugi::xml_node& node) {
    std::string name = node.attribute("NAME").value();
    if (name.empty()) {
        throw DeclarationError(std::string("an element ") + node.name() + " without a name");
    }
    if (!IsName(name) || !IsXmlText(name)) {
        throw DeclarationError(std::string("an element ") + node.name() + " has a NAME that is no name: " + name);
    }
    return name;
}

void ReadHolder(const pugi::xml_node& node, Holder& result) {
    result.name = RequiredName(node);
    result.isArray = IsArrayElement(node);
    if (const auto size = node.attribute("ARRAYSIZE")) {
        result.arraySize = size.as_uint();
    }
    if (IsReferenceElement(node)) {
        result.type = CimType::kReference;
        result.referenceClass = node.attribute("REFERENCECLASS").value();
    } else {
        result.type = ReadDeclaredType(node);
    }
}

/// Values and ValueMap go side by side (DSP0004).
void CheckValueMap(const Element& element) {
    const Qualifier* const map = element.FindQualifier("ValueMap");
    const Qualifier* const values = element.FindQualifier("Values");
    if (!map || !values || !map->value.AsArray() || !values->value.AsArray()) {
        return;
    }
    if (map->value.AsArray()->size() != values->value.AsArray()->size()) {
        throw DeclarationError(element.name + ": ValueMap and Values are of different lengths");
    }
}

bool IsSame(const Value& a, const Value& b) {
    const auto isSame = [](const auto* left, const auto* right) {
        return left && right ? *left == *right : left == right;
    };
    return isSame(a.AsText(), b.AsText()) && isSame(a.AsArray(), b.AsArray());
}

bool IsSame(const QualifierDeclaration& a, const QualifierDeclaration& b) {
    return a.type == b.type && a.isArray == b.isArray && a.scopes == b.scopes && a.overridable == b.overridable &&
           a.toSubclass == b.toSubclass && a.toInstance == b.toInstance && a.translatable == b.translatable &&
           IsSame(a.defaultValue, b.defaultValue);
}

void Reader::Collect(const pugi::xml_node& object) {
    const std::string_view kind = object.name();
    // Instances are read when the classes are known, by others.
    if (kind == "INSTANCE") {
        return;
    }
    if (kind == "QUALIFIER.DECLARATION") {
        return AddQualifierDeclaration(object);
    }
    if (kind != "CLASS") {
        Fail("unexpected element " + std::string(kind));
    }
    const auto [first, isNew] = classNodes_.emplace(RequiredName(object), object);
    if (!isNew) {
        Fail("class " + RequiredName(object) + " is declared twice, first at " + documents_.Where(first->second));
    }
}

void Reader::AddQualifierDeclaration(const pugi::xml_node& node) {
    QualifierDeclaration declaration;
    declaration.name = RequiredName(node);
    where_ = "qualifier declaration " + declaration.name;
    declaration.isArray = IsTrue(node.attribute("ISARRAY"), false);
    declaration.overridable = IsTrue(node.attribute("OVERRIDABLE"), true);
    declaration.toSubclass = IsTrue(node.attribute("TOSUBCLASS"), true);
    declaration.toInstance = IsTrue(node.attribute("TOINSTANCE"), false);
    declaration.translatable = IsTrue(node.attribute("TRANSLATABLE"), false);
    for (const auto& [scope, attribute] : kScopes) {
        if (IsTrue(node.child("SCOPE").attribute(attribute), false)) {
            declaration.scopes.insert(scope);
        }
    }
    Try(node, [&] {
        declaration.type = ReadDeclaredType(node);
        declaration.defaultValue = ReadDeclaredValue(node, declaration.type, declaration.isArray);
        const QualifierDeclaration* const known = schema_.FindQualifier(declaration.name);
        if (!known) {
            schema_.Add(std::move(declaration));
        } else if (!IsSame(*known, declaration)) {
            Fail("declared twice, and not the same both times");
        }
    });
    where_ = "schema";
}

/// The class of a name that is one of classNodes_.
const Class& Reader::Resolve(std::string_view name) {
    if (const Class* const known = schema_.FindClass(name)) {
        return *known;
    }
    const auto declared = classNodes_.find(name);
    const pugi::xml_node& node = declared->second;
    inProgress_.insert(declared->first);
    Class result;
    result.name = declared->first;
    where_ = "class " + result.name;
    if (!Try(node, [&] { Inherit(node, result); })) {
        incomplete_.insert(result.name);
    }
    where_ = "class " + result.name;
    ReadClass(node, result);
    return schema_.Add(std::move(result));
}

void Reader::Inherit(const pugi::xml_node& node, Class& result) {
    const std::string name = node.attribute("SUPERCLASS").value();
    if (name.empty()) {
        return;
    }
    if (classNodes_.count(name) == 0) {
        Fail("superclass " + name + " is not declared");
    }
    if (!schema_.FindClass(name) && inProgress_.count(name) != 0) {
        Fail("class " + name + " is its own superclass");
    }
    const Class& superclass = Resolve(name);
    if (incomplete_.count(superclass.name) != 0) {
        incomplete_.insert(result.name);
    }
    result.superclass = superclass.name;
    result.properties = superclass.properties;
    result.methods = superclass.methods;
    result.qualifiers = Propagated(superclass.qualifiers);
    MarkInherited(result.properties);
    MarkInherited(result.methods);
}

void Reader::ReadClass(const pugi::xml_node& node, Class& result) {
    // Association is what makes a class an association, so it decides about the scope of the others.
    const bool isAssociation =
        result.Is("Association") || node.find_child_by_attribute("QUALIFIER", "NAME", "Association");
    result.qualifiers =
        ReadQualifiers(node, isAssociation ? Scope::kAssociation : Scope::kClass, std::move(result.qualifiers));
    std::set<std::string, NameLess> declared;
    for (const auto& child : Elements(node)) {
        if (std::string_view(child.name()) == "QUALIFIER") {
            continue;
        }
        where_ = "class " + result.name + ", " + child.name() + ' ' + child.attribute("NAME").value();
        const bool isRead = Try(child, [&] {
            if (!declared.insert(RequiredName(child)).second) {
                Fail("declared twice");
            }
            ReadFeature(child, result);
        });
        if (!isRead) {
            incomplete_.insert(result.name);
        }
    }
}

void Reader::ReadFeature(const pugi::xml_node& node, Class& result) {
    if (IsPropertyElement(node)) {
        AddProperty(node, result);
    } else if (std::string_view(node.name()) == "METHOD") {
        AddMethod(node, result);
    } else {
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
    CheckOverride(property, overrides, incomplete_.count(result.name) == 0);
    CheckValueMap(property);
    property.defaultValue = ReadDeclaredValue(node, property.type, property.isArray);
    if (!overrides) {
        result.properties.push_back(std::move(property));
        return;
    }
    if (inherited->type != property.type || inherited->isArray != property.isArray) {
        Fail("an override cannot change the type");
    }
    property.classOrigin = inherited->classOrigin;
    *inherited = std::move(property);
}

void Reader::AddMethod(const pugi::xml_node& node, Class& result) {
    Method method;
    method.name = RequiredName(node);
    method.type = ReadDeclaredType(node);
    method.classOrigin = result.name;
    const auto inherited = FindNamed(result.methods, method.name);
    const bool overrides = inherited != result.methods.end();
    method.qualifiers =
        ReadQualifiers(node, Scope::kMethod, overrides ? inherited->qualifiers : std::vector<Qualifier>());
    CheckOverride(method, overrides, incomplete_.count(result.name) == 0);
    CheckValueMap(method);
    for (const auto& child : Elements(node)) {
        if (!IsParameterElement(child)) {
            continue;
        }
        Parameter parameter;
        ReadHolder(child, parameter);
        parameter.qualifiers = ReadQualifiers(child, Scope::kParameter, {});
        CheckValueMap(parameter);
        if (FindNamed(method.parameters, parameter.name) != method.parameters.end()) {
            Fail("parameter " + parameter.name + " is declared twice");
        }
        method.parameters.push_back(std::move(parameter));
    }
    if (!overrides) {
        result.methods.push_back(std::move(method));
        return;
    }
    method.classOrigin = inherited->classOrigin;
    *inherited = std::move(method);
}

std::vector<Qualifier> Reader::ReadQualifiers(const pugi::xml_node& node, Scope scope,
                                              std::vector<Qualifier> inherited) {
    std::vector<Qualifier> result = std::move(inherited);
    std::set<std::string, NameLess> declared;
    for (const auto& child : node.children("QUALIFIER")) {
        Try(child, [&] {
            if (!declared.insert(RequiredName(child)).second) {
                Fail("qualifier " + RequiredName(child) + " is declared twice");
            }
            AddQualifier(child, scope, result);
        });
    }
    return result;
}

void Reader::AddQualifier(const pugi::xml_node& node, Scope scope, std::vector<Qualifier>& result) const {
    Qualifier qualifier = ReadQualifier(node, scope);
    const auto overridden = std::find_if(result.begin(), result.end(), [&](const Qualifier& known) {
        return known.declaration == qualifier.declaration;
    });
    if (overridden == result.end()) {
        result.push_back(std::move(qualifier));
    } else if (qualifier.declaration->overridable || IsSame(overridden->value, qualifier.value)) {
        *overridden = std::move(qualifier);
    } else {
        Fail("qualifier " + qualifier.declaration->name + " is inherited and cannot be overridden");
    }
}

Qualifier Reader::ReadQualifier(const pugi::xml_node& node, Scope scope) const {
    const std::string name = RequiredName(node);
    const QualifierDeclaration* const declaration = schema_.FindQualifier(name);
    if (!declaration) {
        Fail("qualifier " + name + " has no declaration");
    }
    const bool isInScope = declaration->scopes.count(scope) != 0 ||
                           // An association is a class, too.
                           (scope == Scope::kAssociation && declaration->scopes.count(Scope::kClass) != 0);
    if (!isInScope) {
        Fail("qualifier " + name + " is not meant for this kind of element");
    }
    if (ReadDeclaredType(node) != declaration->type) {
        Fail("qualifier " + name + " has another type than its declaration");
    }
    return {declaration, ReadDeclaredValue(node, declaration->type, declaration->isArray), false};
}

void Reader::CheckOverride(const Element& element, bool overrides, bool isComplete) const {
    const bool isMarked = element.FindQualifier("Override") != nullptr;
    if (isMarked && !overrides && isComplete) {
        Fail("Override, but no superclass has this element");
    }
    if (overrides && !isMarked) {
        Fail("a superclass has this element, so that it needs the qualifier Override");
    }
}

/// Classes can refer to each other in any order, so that their names are checked when all are known.
void Reader::CheckClassNames() {
    for (const auto& [name, node] : classNodes_) {
        const Class& declaration = *schema_.FindClass(name);
        for (const auto& property : declaration.properties) {
            // The one that declares it has been told.
            if (property.propagated) {
                continue;
            }
            where_ = "class " + name + ", " + property.name;
            CheckClassName(node, property.referenceClass);
            if (const Qualifier* const embedded = property.FindQualifier("EmbeddedInstance")) {
                if (const std::string* const text = embedded->value.AsText()) {
                    CheckClassName(node, *text);
                }
            }
        }
        for (const auto& method : declaration.methods) {
            for (const auto& parameter : method.parameters) {
                where_ = "class " + name + ", " + method.name + ", " + parameter.name;
                if (!method.propagated) {
                    CheckClassName(node, parameter.referenceClass);
                }
            }
        }
    }
}

void Reader::CheckClassName(const pugi::xml_node& node, const std::string& name) {
    if (!name.empty() && !schema_.FindClass(name)) {
        Note(node, "refers to class " + name + ", which is not declared");
    }
}

} // namespace

Schema ReadSchema(const SchemaDocuments& documents) { return Reader(documents).Read(); }

Schema ReadSchema(std::string_view document) {
    return ReadSchema(SchemaDocuments({{"schema", std::string(document)}}));
}

Schema BuiltInSchema() { return ReadSchema(SchemaDocuments(BuiltInSources())); }

} // namespace demo
