#include "cimxml/ObjectDecoder.h"

#include "cimxml/ElementText.h"
#include "cimxml/Limits.h"
#include "cimxml/ScalarDecoder.h"
#include "cimxml/XmlCharacters.h"
#include "cimxml/XmlError.h"
#include "cimxml/XmlLexer.h"
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

CIMFlavor flavorOf(const Attributes& attributes) {
    CIMFlavor flavor = attributes.getBoolean("OVERRIDABLE", true) ? CIMFlavor::OVERRIDABLE : CIMFlavor::DISABLEOVERRIDE;
    flavor.addFlavor(attributes.getBoolean("TOSUBCLASS", true) ? CIMFlavor::TOSUBCLASS : CIMFlavor::RESTRICTED);
    if (attributes.getBoolean("TOINSTANCE", false))
        flavor.addFlavor(CIMFlavor::TOINSTANCE);
    if (attributes.getBoolean("TRANSLATABLE", false))
        flavor.addFlavor(CIMFlavor::TRANSLATABLE);
    return flavor;
}

CIMScope scopeOf(XmlElement element) {
    const Attributes attributes(element);
    const std::array<std::pair<std::string_view, CIMScope>, 7> kScopes = {{{"CLASS", CIMScope::CLASS},
                                                                           {"ASSOCIATION", CIMScope::ASSOCIATION},
                                                                           {"INDICATION", CIMScope::INDICATION},
                                                                           {"PROPERTY", CIMScope::PROPERTY},
                                                                           {"REFERENCE", CIMScope::REFERENCE},
                                                                           {"METHOD", CIMScope::METHOD},
                                                                           {"PARAMETER", CIMScope::PARAMETER}}};
    CIMScope scope;
    for (const auto& [name, bit] : kScopes)
        if (attributes.getBoolean(name, false))
            scope.addScope(bit);
    return scope;
}

Uint32 arraySizeOf(const Attributes& attributes) {
    const auto size = attributes.find("ARRAYSIZE");
    return size ? decodeScalar<Uint32>(*size) : 0;
}

/// The type of an element with a TYPE attribute. A string can stand for an embedded object.
CIMType typeOf(const Attributes& attributes, std::string_view typeName) {
    const CIMType type = decodeType(typeName);
    if (type != CIMTYPE_STRING)
        return type;
    auto embedded = attributes.find("EmbeddedObject");
    if (!embedded)
        embedded = attributes.find("EMBEDDEDOBJECT");
    if (!embedded)
        return type;
    if (*embedded == "object")
        return CIMTYPE_OBJECT;
    if (*embedded == "instance")
        return CIMTYPE_INSTANCE;
    throwXmlError({"unknown kind of EmbeddedObject: ", *embedded});
}

CIMType typeOf(const Attributes& attributes) { return typeOf(attributes, attributes.get("TYPE")); }

bool isValue(XmlElement element) {
    constexpr std::string_view kValue = "VALUE";
    return element.name().substr(0, kValue.size()) == kValue;
}

/// The child element that holds the value; an empty node when there is none.
XmlElement valueIn(XmlElement element) {
    XmlElement value;
    for (const auto child : ChildElements(element)) {
        if (!isValue(child))
            continue;
        if (value)
            throwUnexpected(child);
        value = child;
    }
    return value;
}

bool isArrayValue(XmlElement element) { return isNamed(element, "VALUE.ARRAY") || isNamed(element, "VALUE.REFARRAY"); }

/// The forms that a property or a parameter has.
enum class Form { Scalar, Array, Reference, ReferenceArray };
using FormNames = std::array<std::string_view, 4>;

constexpr FormNames kPropertyForms = {"PROPERTY", "PROPERTY.ARRAY", "PROPERTY.REFERENCE", "PROPERTY.REFARRAY"};
constexpr FormNames kParameterForms = {"PARAMETER", "PARAMETER.ARRAY", "PARAMETER.REFERENCE", "PARAMETER.REFARRAY"};

/// The form that a name says; nothing when it is none of these.
std::optional<Form> formOf(std::string_view name, const FormNames& names) {
    for (std::size_t i = 0; i < names.size(); ++i)
        if (name == names[i])
            return static_cast<Form>(i);
    return std::nullopt;
}

bool isArrayForm(Form form) { return form == Form::Array || form == Form::ReferenceArray; }

/// The type that the form, and for all but references the TYPE attribute, declare.
CIMType typeOf(Form form, const Attributes& attributes) {
    return form == Form::Scalar || form == Form::Array ? typeOf(attributes) : CIMTYPE_REFERENCE;
}

/// The element in a text that holds one, and at most white space, comments and an XML declaration around it.
ElementText elementIn(std::string_view text) {
    ElementText element;
    XmlLexer lexer;
    bool complete = false;
    while (!text.empty()) {
        const std::string_view before = text;
        const XmlLexer::Token token = lexer.next(text);
        const std::string_view bytes = before.substr(0, before.size() - text.size());
        const bool around = complete || element.isEmpty();
        const bool blank = token == XmlLexer::Token::Text && trimmed(bytes).empty();
        if (around && (blank || token == XmlLexer::Token::Other))
            continue;
        const bool begins = token == XmlLexer::Token::StartTag || token == XmlLexer::Token::EmptyTag;
        if (complete || (around && !begins))
            throwXmlError({"an embedded object is not one element"});
        element.append(bytes);
        complete = element.endToken(token, element.text().size(), lexer.attributeCount());
    }
    if (!complete)
        throwXmlError({"an embedded object is not complete"});
    return element;
}

} // namespace

CIMClass ObjectDecoder::decodeClass(XmlElement element) {
    const Attributes attributes(element);
    CIMClass cimClass(names_.get(attributes.get("NAME")), optionalName(attributes, "SUPERCLASS"));
    for (const auto child : ChildElements(element)) {
        if (isNamed(child, "METHOD"))
            cimClass.addMethod(decodeMethod(child));
        else if (!addProperty(cimClass, child) && !addQualifier(cimClass, child))
            throwUnexpected(child);
    }
    return cimClass;
}

CIMInstance ObjectDecoder::decodeInstance(XmlElement element) {
    CIMInstance instance(names_.get(Attributes(element).get("CLASSNAME")));
    for (const auto child : ChildElements(element)) {
        // The qualifiers of an instance are deprecated (DSP0200); its class has them.
        if (!addProperty(instance, child) && !isNamed(child, "QUALIFIER"))
            throwUnexpected(child);
    }
    return instance;
}

CIMInstance ObjectDecoder::decodeInstanceWithPath(XmlElement element) {
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

CIMObject ObjectDecoder::decodeObject(XmlElement element) {
    CIMObjectPath path;
    CIMObject object;
    for (const auto child : ChildElements(element)) {
        if (isNamed(child, "INSTANCE"))
            object = decodeInstance(child);
        else if (isNamed(child, "CLASS"))
            object = decodeClass(child);
        else
            path = paths_.decodePath(child);
    }
    const bool hasPath = !path.getClassName().isNull();
    if (object.isUninitialized() || (!hasPath && !isNamed(element, "VALUE.OBJECT")))
        throwXmlError({"the element ", element.name(), " lacks the object or its path"});
    if (hasPath)
        object.setPath(path);
    return object;
}

CIMObjectPath ObjectDecoder::decodeInstanceName(XmlElement element) { return paths_.decodePath(element); }

CIMObjectPath ObjectDecoder::decodeObjectPath(XmlElement element) { return paths_.decodeReference(element); }

CIMName ObjectDecoder::decodeClassName(XmlElement element) { return names_.get(Attributes(element).get("NAME")); }

CIMQualifierDecl ObjectDecoder::decodeQualifierDecl(XmlElement element) {
    CIMScope scope;
    for (const auto child : ChildElements(element)) {
        if (isNamed(child, "SCOPE"))
            scope.addScope(scopeOf(child));
        else if (!isValue(child))
            throwUnexpected(child);
    }
    const Attributes attributes(element);
    const auto value = valueIn(element);
    const bool isArray = attributes.getBoolean("ISARRAY", isArrayValue(value));
    return CIMQualifierDecl(names_.get(attributes.get("NAME")), decodeValue(typeOf(attributes), isArray, value), scope,
                            flavorOf(attributes), arraySizeOf(attributes));
}

CIMQualifier ObjectDecoder::decodeQualifier(XmlElement element) {
    const Attributes attributes(element);
    const auto value = onlyChild(element);
    return CIMQualifier(names_.get(attributes.get("NAME")), decodeValue(typeOf(attributes), isArrayValue(value), value),
                        flavorOf(attributes), attributes.getBoolean("PROPAGATED", false));
}

CIMMethod ObjectDecoder::decodeMethod(XmlElement element) {
    // A method without a return type, which CIM does not have and DSP0201 allows, counts as one that returns uint32.
    const Attributes attributes(element);
    const auto type = attributes.find("TYPE");
    CIMMethod method(names_.get(attributes.get("NAME")), type ? typeOf(attributes, *type) : CIMTYPE_UINT32,
                     optionalName(attributes, "CLASSORIGIN"), attributes.getBoolean("PROPAGATED", false));
    for (const auto child : ChildElements(element))
        if (!addParameter(method, child) && !addQualifier(method, child))
            throwUnexpected(child);
    return method;
}

template <class Owner>
bool ObjectDecoder::addQualifier(Owner& owner, XmlElement child) {
    if (!isNamed(child, "QUALIFIER"))
        return false;
    owner.addQualifier(decodeQualifier(child));
    return true;
}

template <class Owner>
void ObjectDecoder::addQualifiers(Owner& owner, XmlElement element) {
    for (const auto child : ChildElements(element))
        if (!addQualifier(owner, child) && !isValue(child))
            throwUnexpected(child);
}

template <class Owner>
bool ObjectDecoder::addProperty(Owner& owner, XmlElement child) {
    const auto form = formOf(child.name(), kPropertyForms);
    if (!form)
        return false;
    const Attributes attributes(child);
    CIMProperty property(names_.get(attributes.get("NAME")),
                         decodeValue(typeOf(*form, attributes), isArrayForm(*form), valueIn(child)),
                         arraySizeOf(attributes), optionalName(attributes, "REFERENCECLASS"),
                         optionalName(attributes, "CLASSORIGIN"), attributes.getBoolean("PROPAGATED", false));
    addQualifiers(property, child);
    owner.addProperty(property);
    return true;
}

bool ObjectDecoder::addParameter(CIMMethod& method, XmlElement child) {
    const auto form = formOf(child.name(), kParameterForms);
    if (!form)
        return false;
    const Attributes attributes(child);
    CIMParameter parameter(names_.get(attributes.get("NAME")), typeOf(*form, attributes), isArrayForm(*form),
                           arraySizeOf(attributes), optionalName(attributes, "REFERENCECLASS"));
    addQualifiers(parameter, child);
    method.addParameter(parameter);
    return true;
}

CIMValue ObjectDecoder::decodeValue(CIMType type, bool isArray, XmlElement value) {
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
CIMValue ObjectDecoder::decodeScalarValue(XmlElement value) {
    if constexpr (isEmbedded<T>) {
        const T object = decodeItem<T>(value);
        return object.isUninitialized() ? CIMValue(detail::ValueType<T>::kType, false) : CIMValue(object);
    } else {
        return CIMValue(decodeItem<T>(value));
    }
}

template <class T>
CIMValue ObjectDecoder::decodeArrayValue(XmlElement value) {
    Array<T> items;
    for (const auto item : ChildElements(value))
        items.append(isNamed(item, "VALUE.NULL") ? T() : decodeItem<T>(item));
    return CIMValue(items);
}

template <class T>
T ObjectDecoder::decodeItem(XmlElement value) {
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
        return CIMInstance(object);
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

CIMName ObjectDecoder::optionalName(const Attributes& attributes, std::string_view attributeName) {
    const auto name = attributes.find(attributeName);
    return name && !name->empty() ? names_.get(*name) : CIMName();
}

} // namespace Pegasus::cimxml
