#include "cimxml/ObjectDecoder.h"

#include "cimxml/ElementText.h"
#include "cimxml/Limits.h"
#include "cimxml/ScalarDecoder.h"
#include "cimxml/XmlCharacters.h"
#include "cimxml/XmlError.h"
#include "cimxml/XmlLexer.h"
#include "cimxml/XmlTree.h"
#include "model/VisitType.h"

#include <array>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace Pegasus::cimxml {

namespace {

template <class T>
constexpr bool isEmbedded = std::is_same_v<T, CIMObject> || std::is_same_v<T, CIMInstance>;

/// What a property, parameter or method says of its values.
struct Declared {
    CIMType type;
    bool isArray;
};

CIMFlavor flavorOf(pugi::xml_node element) {
    CIMFlavor flavor =
        booleanAttribute(element, "OVERRIDABLE", true) ? CIMFlavor::OVERRIDABLE : CIMFlavor::DISABLEOVERRIDE;
    flavor.addFlavor(booleanAttribute(element, "TOSUBCLASS", true) ? CIMFlavor::TOSUBCLASS : CIMFlavor::RESTRICTED);
    if (booleanAttribute(element, "TOINSTANCE", false))
        flavor.addFlavor(CIMFlavor::TOINSTANCE);
    if (booleanAttribute(element, "TRANSLATABLE", false))
        flavor.addFlavor(CIMFlavor::TRANSLATABLE);
    return flavor;
}

CIMScope scopeOf(pugi::xml_node element) {
    const std::array<std::pair<std::string_view, CIMScope>, 7> kScopes = {{{"CLASS", CIMScope::CLASS},
                                                                           {"ASSOCIATION", CIMScope::ASSOCIATION},
                                                                           {"INDICATION", CIMScope::INDICATION},
                                                                           {"PROPERTY", CIMScope::PROPERTY},
                                                                           {"REFERENCE", CIMScope::REFERENCE},
                                                                           {"METHOD", CIMScope::METHOD},
                                                                           {"PARAMETER", CIMScope::PARAMETER}}};
    CIMScope scope;
    for (const auto& [name, bit] : kScopes)
        if (booleanAttribute(element, name, false))
            scope.addScope(bit);
    return scope;
}

Uint32 arraySizeOf(pugi::xml_node element) {
    const auto size = findAttribute(element, "ARRAYSIZE");
    return size ? decodeScalar<Uint32>(*size) : 0;
}

/// The type of an element with a TYPE attribute. A string can stand for an embedded object.
CIMType typeOf(pugi::xml_node element, std::string_view typeName) {
    const CIMType type = decodeType(typeName);
    if (type != CIMTYPE_STRING)
        return type;
    auto embedded = findAttribute(element, "EmbeddedObject");
    if (!embedded)
        embedded = findAttribute(element, "EMBEDDEDOBJECT");
    if (!embedded)
        return type;
    if (*embedded == "object")
        return CIMTYPE_OBJECT;
    if (*embedded == "instance")
        return CIMTYPE_INSTANCE;
    throwXmlError({"unknown kind of EmbeddedObject: ", *embedded});
}

CIMType typeOf(pugi::xml_node element) { return typeOf(element, attribute(element, "TYPE")); }

bool isValue(pugi::xml_node element) {
    constexpr std::string_view kValue = "VALUE";
    return std::string_view(element.name()).substr(0, kValue.size()) == kValue;
}

/// The child element that holds the value; an empty node when there is none.
pugi::xml_node valueIn(pugi::xml_node element) {
    pugi::xml_node value;
    for (const auto child : ChildElements(element)) {
        if (!isValue(child))
            continue;
        if (value)
            throwUnexpected(child);
        value = child;
    }
    return value;
}

bool isArrayValue(pugi::xml_node element) {
    return isNamed(element, "VALUE.ARRAY") || isNamed(element, "VALUE.REFARRAY");
}

/// The names of the forms that a property or a parameter has: scalar, array, reference, array of references.
struct Forms {
    std::string_view scalar, array, reference, referenceArray;
};

constexpr Forms kPropertyForms = {"PROPERTY", "PROPERTY.ARRAY", "PROPERTY.REFERENCE", "PROPERTY.REFARRAY"};
constexpr Forms kParameterForms = {"PARAMETER", "PARAMETER.ARRAY", "PARAMETER.REFERENCE", "PARAMETER.REFARRAY"};

/// What the element's form and its TYPE attribute declare; nothing when it has none of the forms.
std::optional<Declared> declaredBy(pugi::xml_node element, const Forms& forms) {
    const std::string_view name = element.name();
    if (name == forms.scalar)
        return Declared{typeOf(element), false};
    if (name == forms.array)
        return Declared{typeOf(element), true};
    if (name == forms.reference)
        return Declared{CIMTYPE_REFERENCE, false};
    if (name == forms.referenceArray)
        return Declared{CIMTYPE_REFERENCE, true};
    return std::nullopt;
}

/// The element in a text that holds one, and at most white space, comments and an XML declaration around it.
ElementText elementIn(std::string_view text) {
    ElementText element;
    XmlLexer lexer;
    bool complete = false;
    while (!text.empty()) {
        const std::string_view before = text;
        const XmlLexer::Token token = lexer.next(text);
        const bool around = complete || element.isEmpty();
        if (around && (token == XmlLexer::Token::Other || (token == XmlLexer::Token::Text && lexer.isBlank())))
            continue;
        const bool begins = token == XmlLexer::Token::StartTag || token == XmlLexer::Token::EmptyTag;
        if (complete || (around && !begins))
            throwXmlError({"an embedded object is not one element"});
        element.append(before.substr(0, before.size() - text.size()));
        complete = element.endToken(token, lexer.attributeCount());
    }
    if (!complete)
        throwXmlError({"an embedded object is not complete"});
    return element;
}

} // namespace

CIMClass ObjectDecoder::decodeClass(pugi::xml_node element) {
    CIMClass cimClass(names_.get(attribute(element, "NAME")), optionalName(element, "SUPERCLASS"));
    for (const auto child : ChildElements(element)) {
        if (isNamed(child, "METHOD"))
            cimClass.addMethod(decodeMethod(child));
        else if (!addProperty(cimClass, child) && !addQualifier(cimClass, child))
            throwUnexpected(child);
    }
    return cimClass;
}

CIMInstance ObjectDecoder::decodeInstance(pugi::xml_node element) {
    CIMInstance instance(names_.get(attribute(element, "CLASSNAME")));
    for (const auto child : ChildElements(element)) {
        // The qualifiers of an instance are deprecated (DSP0200); its class has them.
        if (!addProperty(instance, child) && !isNamed(child, "QUALIFIER"))
            throwUnexpected(child);
    }
    return instance;
}

CIMInstance ObjectDecoder::decodeInstanceWithPath(pugi::xml_node element) {
    CIMObjectPath path;
    CIMInstance instance;
    for (const auto child : ChildElements(element)) {
        if (isNamed(child, "INSTANCENAME") || isNamed(child, "INSTANCEPATH"))
            path = paths_.decodePath(child);
        else if (isNamed(child, "INSTANCE"))
            instance = decodeInstance(child);
        else
            throwUnexpected(child);
    }
    if (path.getClassName().isNull() || instance.isUninitialized())
        throwXmlError({"the element ", element.name(), " lacks the instance or its path"});
    instance.setPath(path);
    return instance;
}

CIMName ObjectDecoder::decodeClassName(pugi::xml_node element) { return names_.get(attribute(element, "NAME")); }

CIMQualifierDecl ObjectDecoder::decodeQualifierDecl(pugi::xml_node element) {
    CIMScope scope;
    for (const auto child : ChildElements(element)) {
        if (isNamed(child, "SCOPE"))
            scope.addScope(scopeOf(child));
        else if (!isValue(child))
            throwUnexpected(child);
    }
    const auto value = valueIn(element);
    const bool isArray = booleanAttribute(element, "ISARRAY", isArrayValue(value));
    return CIMQualifierDecl(names_.get(attribute(element, "NAME")), decodeValue(typeOf(element), isArray, value), scope,
                            flavorOf(element), arraySizeOf(element));
}

CIMQualifier ObjectDecoder::decodeQualifier(pugi::xml_node element) {
    const auto value = onlyChild(element);
    return CIMQualifier(names_.get(attribute(element, "NAME")),
                        decodeValue(typeOf(element), isArrayValue(value), value), flavorOf(element),
                        booleanAttribute(element, "PROPAGATED", false));
}

CIMMethod ObjectDecoder::decodeMethod(pugi::xml_node element) {
    // A method without a return type, which CIM does not have and DSP0201 allows, counts as one that returns uint32.
    const auto type = findAttribute(element, "TYPE");
    CIMMethod method(names_.get(attribute(element, "NAME")), type ? typeOf(element, *type) : CIMTYPE_UINT32,
                     optionalName(element, "CLASSORIGIN"), booleanAttribute(element, "PROPAGATED", false));
    for (const auto child : ChildElements(element))
        if (!addParameter(method, child) && !addQualifier(method, child))
            throwUnexpected(child);
    return method;
}

template <class Owner>
bool ObjectDecoder::addQualifier(Owner& owner, pugi::xml_node child) {
    if (!isNamed(child, "QUALIFIER"))
        return false;
    owner.addQualifier(decodeQualifier(child));
    return true;
}

template <class Owner>
void ObjectDecoder::addQualifiers(Owner& owner, pugi::xml_node element) {
    for (const auto child : ChildElements(element))
        if (!addQualifier(owner, child) && !isValue(child))
            throwUnexpected(child);
}

template <class Owner>
bool ObjectDecoder::addProperty(Owner& owner, pugi::xml_node child) {
    const auto declared = declaredBy(child, kPropertyForms);
    if (!declared)
        return false;
    CIMProperty property(names_.get(attribute(child, "NAME")),
                         decodeValue(declared->type, declared->isArray, valueIn(child)), arraySizeOf(child),
                         optionalName(child, "REFERENCECLASS"), optionalName(child, "CLASSORIGIN"),
                         booleanAttribute(child, "PROPAGATED", false));
    addQualifiers(property, child);
    owner.addProperty(property);
    return true;
}

bool ObjectDecoder::addParameter(CIMMethod& method, pugi::xml_node child) {
    const auto declared = declaredBy(child, kParameterForms);
    if (!declared)
        return false;
    CIMParameter parameter(names_.get(attribute(child, "NAME")), declared->type, declared->isArray, arraySizeOf(child),
                           optionalName(child, "REFERENCECLASS"));
    addQualifiers(parameter, child);
    method.addParameter(parameter);
    return true;
}

CIMValue ObjectDecoder::decodeValue(CIMType type, bool isArray, pugi::xml_node value) {
    if (!value || isNamed(value, "VALUE.NULL"))
        return CIMValue(type, isArray);
    if (isArrayValue(value) != isArray)
        throwUnexpected(value);
    return detail::visitType(type, [&](auto tag) {
        using T = typename decltype(tag)::Type;
        return isArray ? decodeArrayValue<T>(value) : decodeScalarValue<T>(value);
    });
}

template <class T>
CIMValue ObjectDecoder::decodeScalarValue(pugi::xml_node value) {
    if constexpr (isEmbedded<T>) {
        const T object = decodeItem<T>(value);
        return object.isUninitialized() ? CIMValue(detail::ValueType<T>::kType, false) : CIMValue(object);
    } else {
        return CIMValue(decodeItem<T>(value));
    }
}

template <class T>
CIMValue ObjectDecoder::decodeArrayValue(pugi::xml_node value) {
    Array<T> items;
    for (const auto item : ChildElements(value))
        items.append(isNamed(item, "VALUE.NULL") ? T() : decodeItem<T>(item));
    return CIMValue(items);
}

template <class T>
T ObjectDecoder::decodeItem(pugi::xml_node value) {
    constexpr bool kReference = std::is_same_v<T, CIMObjectPath>;
    if (!isNamed(value, kReference ? "VALUE.REFERENCE" : "VALUE"))
        throwUnexpected(value);
    std::string buffer;
    if constexpr (kReference) {
        return paths_.decodeReference(value);
    } else if constexpr (std::is_same_v<T, CIMObject>) {
        return decodeEmbedded(textOf(value, buffer));
    } else if constexpr (std::is_same_v<T, CIMInstance>) {
        const CIMObject object = decodeEmbedded(textOf(value, buffer));
        if (object.isUninitialized())
            return CIMInstance();
        if (object.isClass())
            throwXmlError({"a class is embedded where an instance is declared"});
        return object.getInstance();
    } else {
        return decodeScalar<T>(textOf(value, buffer));
    }
}

/// The class or instance that a text holds; an uninitialised object for an empty text.
CIMObject ObjectDecoder::decodeEmbedded(std::string_view text) {
    if (trimmed(text).empty())
        return CIMObject();
    if (++embedding_ > kMaxEmbedding)
        throwXmlError({"objects are embedded deeper than ", std::to_string(kMaxEmbedding)});
    ElementText embedded = elementIn(text);
    XmlTree tree;
    const auto element = tree.parse(embedded);
    CIMObject object;
    if (isNamed(element, "INSTANCE"))
        object = decodeInstance(element);
    else if (isNamed(element, "CLASS"))
        object = decodeClass(element);
    else
        throwXmlError({"the element ", element.name(), " is embedded, which is no object"});
    --embedding_;
    return object;
}

CIMName ObjectDecoder::optionalName(pugi::xml_node element, std::string_view attributeName) {
    const auto name = findAttribute(element, attributeName);
    return name && !name->empty() ? names_.get(*name) : CIMName();
}

} // namespace Pegasus::cimxml
