#include "cimxml/ObjectDecoder.h"

#include "cimxml/Limits.h"
#include "cimxml/ScalarDecoder.h"
#include "cimxml/XmlCharacters.h"
#include "cimxml/XmlError.h"
#include "model/VisitType.h"

#include <array>
#include <memory>
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

CIMScope scopeOf(const Attributes& attributes) {
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

bool isValue(std::string_view elementName) noexcept {
    constexpr std::string_view kValue = "VALUE";
    return elementName.substr(0, kValue.size()) == kValue;
}

bool isArrayValue(std::string_view elementName) noexcept {
    return elementName == "VALUE.ARRAY" || elementName == "VALUE.REFARRAY";
}

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

/// Sees to it that an embedded object, or the end behind it, comes next.
void expect(XmlReader::Ahead expected, XmlReader& reader) {
    const XmlReader::Ahead ahead = reader.ahead();
    if (ahead == expected)
        return;
    if (ahead == XmlReader::Ahead::Nothing)
        throw EndOfText();
    throwXmlError({"an embedded object is not one element"});
}

} // namespace

void ObjectDecoder::startAnswer(const Checkpoint* checkpoint) noexcept {
    checkpoint_ = checkpoint;
    embedding_ = 0;
    paths_.startAnswer();
    if (tags_.isFull()) {
        tags_.clear();
        propertyHeads_.clear();
    }
    if (qualifiers_.isFull())
        qualifiers_.clear();
}

CIMClass ObjectDecoder::decodeClass(XmlReader& reader) {
    const Attributes& attributes = reader.attributes();
    CIMClass cimClass(names_.get(attributes.get("NAME")), optionalName(attributes, "SUPERCLASS"));
    while (reader.nextElement()) {
        if (reader.name() == "METHOD")
            cimClass.addMethod(decodeMethod(reader));
        else if (!addProperty(cimClass, reader) && !addQualifier(cimClass, reader))
            reader.throwUnexpected();
    }
    return cimClass;
}

CIMInstance ObjectDecoder::decodeInstance(XmlReader& reader) {
    CIMInstance instance(names_.get(reader.attributes().get("CLASSNAME")));
    while (reader.nextElement()) {
        if (addProperty(instance, reader))
            continue;
        // The qualifiers of an instance are deprecated (DSP0200); its class has them.
        if (reader.name() != "QUALIFIER")
            reader.throwUnexpected();
        reader.skip();
    }
    return instance;
}

CIMInstance ObjectDecoder::decodeInstanceWithPath(XmlReader& reader) {
    const std::string_view name = reader.name();
    CIMObjectPath path;
    CIMInstance instance;
    while (reader.nextElement()) {
        if (reader.name() == "INSTANCENAME" || reader.name() == "INSTANCEPATH")
            path = paths_.decodePath(reader);
        else if (reader.name() == "INSTANCE")
            instance = decodeInstance(reader);
        else
            reader.throwUnexpected();
    }
    if (path.getClassName().isNull() || instance.isUninitialized())
        throwXmlError({"the element ", name, " lacks the instance or its path"});
    instance.setPath(path);
    return instance;
}

CIMObject ObjectDecoder::decodeObject(XmlReader& reader) {
    const std::string_view name = reader.name();
    CIMObjectPath path;
    CIMObject object;
    while (reader.nextElement()) {
        if (reader.name() == "INSTANCE")
            object = decodeInstance(reader);
        else if (reader.name() == "CLASS")
            object = decodeClass(reader);
        else
            path = paths_.decodePath(reader);
    }
    const bool hasPath = !path.getClassName().isNull();
    if (object.isUninitialized() || (!hasPath && name != "VALUE.OBJECT"))
        throwXmlError({"the element ", name, " lacks the object or its path"});
    if (hasPath)
        object.setPath(path);
    return object;
}

CIMObjectPath ObjectDecoder::decodeInstanceName(XmlReader& reader) { return paths_.decodePath(reader); }

CIMObjectPath ObjectDecoder::decodeObjectPath(XmlReader& reader) { return paths_.decodeReference(reader); }

CIMName ObjectDecoder::decodeClassName(XmlReader& reader) {
    CIMName name = names_.get(reader.attributes().get("NAME"));
    reader.skip();
    return name;
}

CIMQualifierDecl ObjectDecoder::decodeQualifierDecl(XmlReader& reader) {
    const Attributes& attributes = reader.attributes();
    const CIMName name = names_.get(attributes.get("NAME"));
    const CIMType type = typeOf(attributes);
    const CIMFlavor flavor = flavorOf(attributes);
    const Uint32 arraySize = arraySizeOf(attributes);
    const bool isDeclared = attributes.find("ISARRAY").has_value();
    const bool isArray = attributes.getBoolean("ISARRAY", false);
    CIMScope scope;
    std::optional<CIMValue> value;
    while (reader.nextElement()) {
        if (reader.name() == "SCOPE") {
            scope.addScope(scopeOf(reader.attributes()));
            reader.skip();
        } else if (isValue(reader.name()) && !value) {
            value = decodeValue(type, isDeclared ? isArray : isArrayValue(reader.name()), reader);
        } else {
            reader.throwUnexpected();
        }
    }
    return CIMQualifierDecl(name, value ? *std::move(value) : CIMValue(type, isArray), scope, flavor, arraySize);
}

CIMQualifier ObjectDecoder::decodeQualifier(XmlReader& reader) {
    const std::string_view text = reader.elementUpTo("</QUALIFIER>", kLongestRememberedQualifier);
    if (const auto* const known = qualifiers_.find(text)) {
        reader.skipKnown(text, known->nodes);
        return known->qualifier;
    }
    const std::size_t nodes = reader.nodes();
    CIMQualifier qualifier = decodeNewQualifier(reader);
    const bool isOfObjects = qualifier.getType() == CIMTYPE_OBJECT || qualifier.getType() == CIMTYPE_INSTANCE;
    if (reader.isBehind(text) && !isOfObjects) // objects could be changed
        qualifiers_.add({std::string(text), qualifier, reader.nodes() - nodes});
    return qualifier;
}

CIMQualifier ObjectDecoder::decodeNewQualifier(XmlReader& reader) {
    const Attributes& attributes = reader.attributes();
    CIMName name = names_.get(attributes.get("NAME"));
    const CIMType type = typeOf(attributes);
    const CIMFlavor flavor = flavorOf(attributes);
    const bool propagated = attributes.getBoolean("PROPAGATED", false);
    CIMValue value(type, false);
    if (reader.nextElement()) {
        value = decodeValue(type, isArrayValue(reader.name()), reader);
        if (reader.nextElement())
            reader.throwUnexpected();
    }
    return CIMQualifier(std::move(name), std::move(value), flavor, propagated);
}

CIMMethod ObjectDecoder::decodeMethod(XmlReader& reader) {
    // A method without a return type, which CIM does not have and DSP0201 allows, counts as one that returns uint32.
    const Attributes& attributes = reader.attributes();
    const auto type = attributes.find("TYPE");
    CIMMethod method(names_.get(attributes.get("NAME")), type ? typeOf(attributes, *type) : CIMTYPE_UINT32,
                     optionalName(attributes, "CLASSORIGIN"), attributes.getBoolean("PROPAGATED", false));
    while (reader.nextElement())
        if (!addParameter(method, reader) && !addQualifier(method, reader))
            reader.throwUnexpected();
    return method;
}

template <class Owner>
bool ObjectDecoder::addQualifier(Owner& owner, XmlReader& reader) {
    if (reader.name() != "QUALIFIER")
        return false;
    owner.addQualifier(decodeQualifier(reader));
    return true;
}

template <class Owner>
bool ObjectDecoder::addProperty(Owner& owner, XmlReader& reader) {
    const PropertyHead& head =
        propertyHeads_.get(reader.tag(), [&](const StartTag& tag) { return decodePropertyHead(tag); });
    if (!head.isProperty)
        return false;
    const CIMType type = head.type;
    const bool isArray = head.isArray;
    CIMProperty property(head.name, CIMValue(type, isArray), head.arraySize, head.referenceClass, head.classOrigin,
                         head.propagated);
    bool hasValue = false;
    while (reader.nextElement()) {
        if (isValue(reader.name()) && !hasValue) {
            property.setValue(decodeValue(type, isArray, reader));
            hasValue = true;
        } else if (!addQualifier(property, reader)) {
            reader.throwUnexpected();
        }
    }
    owner.addProperty(property);
    return true;
}

ObjectDecoder::PropertyHead ObjectDecoder::decodePropertyHead(const StartTag& tag) {
    PropertyHead head;
    if (const auto form = formOf(tag.element, kPropertyForms)) {
        head.isProperty = true;
        head.type = typeOf(*form, tag.attributes);
        head.name = names_.get(tag.attributes.get("NAME"));
        head.isArray = isArrayForm(*form);
        head.arraySize = arraySizeOf(tag.attributes);
        head.referenceClass = optionalName(tag.attributes, "REFERENCECLASS");
        head.classOrigin = optionalName(tag.attributes, "CLASSORIGIN");
        head.propagated = tag.attributes.getBoolean("PROPAGATED", false);
    }
    return head;
}

bool ObjectDecoder::addParameter(CIMMethod& method, XmlReader& reader) {
    const auto form = formOf(reader.name(), kParameterForms);
    if (!form)
        return false;
    const Attributes& attributes = reader.attributes();
    CIMParameter parameter(names_.get(attributes.get("NAME")), typeOf(*form, attributes), isArrayForm(*form),
                           arraySizeOf(attributes), optionalName(attributes, "REFERENCECLASS"));
    while (reader.nextElement()) {
        if (isValue(reader.name()))
            reader.skip(); // a default, which CIM does not have
        else if (!addQualifier(parameter, reader))
            reader.throwUnexpected();
    }
    method.addParameter(parameter);
    return true;
}

CIMValue ObjectDecoder::decodeValue(CIMType type, bool isArray, XmlReader& reader) {
    if (reader.name() == "VALUE.NULL") {
        reader.skip();
        return CIMValue(type, isArray);
    }
    if (isArrayValue(reader.name()) != isArray)
        reader.throwUnexpected();
    return detail::visitType(type, [&](auto tag) {
        using T = typename decltype(tag)::Type;
        CIMValue value = isArray ? decodeArrayValue<T>(reader) : decodeScalarValue<T>(reader);
        return value;
    });
}

CIMValue ObjectDecoder::decodeUntypedValue(XmlReader& reader) {
    const std::string_view name = reader.name();
    const bool isReference = name == "VALUE.REFERENCE" || name == "VALUE.REFARRAY";
    return decodeValue(isReference ? CIMTYPE_REFERENCE : CIMTYPE_STRING, isArrayValue(name), reader);
}

template <class T>
CIMValue ObjectDecoder::decodeScalarValue(XmlReader& reader) {
    T item = decodeItem<T>(reader);
    if constexpr (isEmbedded<T>)
        if (item.isUninitialized())
            return CIMValue(detail::ValueType<T>::kType, false);
    return CIMValue(std::move(item));
}

template <class T>
CIMValue ObjectDecoder::decodeArrayValue(XmlReader& reader) {
    Array<T> items;
    Array<Boolean> nulls; // no longer than up to the last one
    while (reader.nextElement()) {
        if (reader.name() != "VALUE.NULL") {
            items.append(decodeItem<T>(reader));
        } else {
            reader.skip();
            while (nulls.size() < items.size())
                nulls.append(false);
            nulls.append(true);
            items.append(T());
        }
    }
    CIMValue value = nulls.size() == 0 ? CIMValue(std::move(items)) : CIMValue(std::move(items), nulls);
    return value;
}

template <class T>
T ObjectDecoder::decodeItem(XmlReader& reader) {
    constexpr bool kReference = std::is_same_v<T, CIMObjectPath>;
    if (reader.name() != (kReference ? "VALUE.REFERENCE" : "VALUE"))
        reader.throwUnexpected();
    if constexpr (kReference) {
        return paths_.decodeReference(reader);
    } else if constexpr (std::is_same_v<T, CIMObject>) {
        return decodeEmbedded(reader.text());
    } else if constexpr (std::is_same_v<T, CIMInstance>) {
        const CIMObject object = decodeEmbedded(reader.text());
        if (object.isUninitialized())
            return CIMInstance();
        if (object.isClass())
            throwXmlError({"a class is embedded where an instance is declared"});
        return CIMInstance(object);
    } else {
        return decodeScalar<T>(reader.text());
    }
}

/// The class or instance that a text holds; an uninitialised object for an empty text.
CIMObject ObjectDecoder::decodeEmbedded(std::string_view text) {
    if (trimmed(text).empty())
        return CIMObject();
    if (++embedding_ > kMaxEmbedding)
        throwPastLimit({"objects are embedded deeper than ", std::to_string(kMaxEmbedding)});
    // On the heap: embedded in one another, readers would take a good part of a small stack.
    const auto reader = std::make_unique<XmlReader>(tags_, checkpoint_, withoutByteOrderMark(text));
    CIMObject object;
    try {
        object = decodeOnlyObject(*reader);
    } catch (const EndOfText&) {
        throwXmlError({"an embedded object is not complete"});
    }
    --embedding_;
    return object;
}

/// The object in a text that holds nothing else than white space and comments around it.
CIMObject ObjectDecoder::decodeOnlyObject(XmlReader& reader) {
    expect(XmlReader::Ahead::Element, reader);
    reader.nextElement();
    CIMObject object;
    if (reader.name() == "INSTANCE")
        object = decodeInstance(reader);
    else if (reader.name() == "CLASS")
        object = decodeClass(reader);
    else
        throwXmlError({"the element ", reader.name(), " is embedded, which is no object"});
    expect(XmlReader::Ahead::Nothing, reader);
    return object;
}

CIMName ObjectDecoder::optionalName(const Attributes& attributes, std::string_view attributeName) {
    const auto name = attributes.find(attributeName);
    return name && !name->empty() ? names_.get(*name) : CIMName();
}

} // namespace Pegasus::cimxml
