#include "cimxml/ObjectDecoder.h"

#include "cimxml/BooleanAttribute.h"
#include "cimxml/ErrorLocation.h"
#include "cimxml/Limits.h"
#include "cimxml/ScalarDecoder.h"
#include "model/Unchecked.h"
#include "model/VisitType.h"
#include "text/Utf8.h"
#include "xml/DecodingError.h"
#include "xml/XmlCharacters.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace Pegasus::cimxml {

using xml::EndOfText;
using xml::kLongestExcerpt;
using xml::throwBadContent;
using xml::throwIncomplete;
using xml::throwPastLimit;
using xml::trimmed;
using xml::withoutByteOrderMark;

namespace {

template <class T>
constexpr bool isEmbedded = std::is_same_v<T, CIMObject> || std::is_same_v<T, CIMInstance>;

CIMFlavor flavorOf(const Attributes& attributes) {
    CIMFlavor flavor =
        booleanAttribute(attributes, "OVERRIDABLE", true) ? CIMFlavor::OVERRIDABLE : CIMFlavor::DISABLEOVERRIDE;
    flavor.addFlavor(booleanAttribute(attributes, "TOSUBCLASS", true) ? CIMFlavor::TOSUBCLASS : CIMFlavor::RESTRICTED);
    if (booleanAttribute(attributes, "TOINSTANCE", false)) {
        flavor.addFlavor(CIMFlavor::TOINSTANCE);
    }
    if (booleanAttribute(attributes, "TRANSLATABLE", false)) {
        flavor.addFlavor(CIMFlavor::TRANSLATABLE);
    }
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
    for (const auto& [name, bit] : kScopes) {
        if (booleanAttribute(attributes, name, false)) {
            scope.addScope(bit);
        }
    }
    return scope;
}

Uint32 arraySizeOf(const Attributes& attributes) {
    const auto size = attributes.find("ARRAYSIZE");
    return size ? decodeScalar<Uint32>(*size) : 0;
}

/// The type of an element with a TYPE attribute. A string can stand for an embedded object.
CIMType typeOf(const Attributes& attributes, std::string_view typeName) {
    const CIMType type = decodeType(typeName);
    if (type != CIMTYPE_STRING) {
        return type;
    }
    auto attribute = attributes.find("EmbeddedObject");
    if (!attribute) {
        attribute = attributes.find("EMBEDDEDOBJECT");
    }
    const std::string_view embedded = trimmed(attribute.value_or(std::string_view()));
    if (embedded.empty()) {
        return type;
    }
    if (embedded == "object") {
        return CIMTYPE_OBJECT;
    }
    if (embedded == "instance") {
        return CIMTYPE_INSTANCE;
    }
    throwBadContent({"unknown kind of EmbeddedObject: ", embedded});
}

CIMType typeOf(const Attributes& attributes) { return typeOf(attributes, attributes.get("TYPE")); }

constexpr std::string_view kValue = "VALUE";

bool isValue(std::string_view elementName) noexcept { return elementName.substr(0, kValue.size()) == kValue; }

bool isArrayValue(std::string_view elementName) noexcept {
    return elementName == "VALUE.ARRAY" || elementName == "VALUE.REFARRAY";
}

bool isClassPath(std::string_view elementName) noexcept {
    return elementName == "CLASSNAME" || elementName == "CLASSPATH" || elementName == "LOCALCLASSPATH";
}

/// The forms that a property or a parameter has.
enum class Form { Scalar, Array, Reference, ReferenceArray };
using FormNames = std::array<std::string_view, 4>;

constexpr FormNames kPropertyForms = {"PROPERTY", "PROPERTY.ARRAY", "PROPERTY.REFERENCE", "PROPERTY.REFARRAY"};
constexpr FormNames kParameterForms = {"PARAMETER", "PARAMETER.ARRAY", "PARAMETER.REFERENCE", "PARAMETER.REFARRAY"};

/// The form that a name says; nothing when it is none of these.
std::optional<Form> formOf(std::string_view name, const FormNames& names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (name == names[i]) {
            return static_cast<Form>(i);
        }
    }
    return std::nullopt;
}

bool isArrayForm(Form form) { return form == Form::Array || form == Form::ReferenceArray; }

/// The type that the form, and for all but references the TYPE attribute, declare.
CIMType typeOf(Form form, const Attributes& attributes) {
    return form == Form::Scalar || form == Form::Array ? typeOf(attributes) : CIMTYPE_REFERENCE;
}

/// Whether a VALUE without text counts as null, since servers send nulls of the type so.
template <class T>
constexpr bool isNullWhereEmpty = std::is_same_v<T, Boolean> || std::is_same_v<T, CIMDateTime>;

/// Whether a type's values are told by a text alone.
template <class T>
constexpr bool isPlain = !isEmbedded<T> && !std::is_same_v<T, CIMObjectPath>;

/// Nothing for a null.
template <class T>
std::optional<T> decodeText(std::string_view text) {
    if (isNullWhereEmpty<T> && trimmed(text).empty()) {
        return std::nullopt;
    }
    return decodeScalar<T>(text);
}

/// Gives an object the properties that another has, but for those at some indices.
template <class Owner>
void addAllBut(std::vector<Uint32> indices, Owner from, Owner& to) {
    std::sort(indices.begin(), indices.end());
    auto next = indices.begin();
    for (Uint32 i = 0; i < from.getPropertyCount(); ++i) {
        if (next != indices.end() && *next == i) {
            ++next;
        } else {
            detail::Unchecked::add(to, from.getProperty(i));
        }
    }
}

/// The object without the properties at some indices.
CIMInstance without(const std::vector<Uint32>& indices, const CIMInstance& instance) {
    CIMInstance rest(instance.getClassName());
    addAllBut(indices, instance, rest);
    return rest;
}

/// The type that qualifiers give to a string property: class definitions from servers have embedded objects in this
/// form.
std::optional<CIMType> embeddedType(const CIMProperty& property) {
    const Uint32 object = property.findQualifier("EmbeddedObject");
    if (object != PEG_NOT_FOUND && property.getQualifier(object).getValue() == CIMValue(true)) {
        return CIMTYPE_OBJECT;
    }
    const Uint32 instance = property.findQualifier("EmbeddedInstance");
    if (instance == PEG_NOT_FOUND) {
        return std::nullopt;
    }
    const CIMValue& className = property.getQualifier(instance).getValue();
    const bool namesClass = className.getType() == CIMTYPE_STRING && !className.isArray() && !className.isNull() &&
                            className != CIMValue(String());
    return namesClass ? std::optional<CIMType>(CIMTYPE_INSTANCE) : std::nullopt;
}

/// Checks that an embedded object, or the end after it, comes next.
void expect(XmlReader::Ahead expected, XmlReader& reader) {
    const XmlReader::Ahead ahead = reader.ahead();
    if (ahead == expected) {
        return;
    }
    if (ahead == XmlReader::Ahead::Nothing) {
        throw EndOfText();
    }
    throwIncomplete({"an embedded object is not one element"});
}

/// Adds where in an embedded object an error is. For the object around it, the error is one of a value.
void describeEmbedded(DecodingError& error, std::string_view text, const XmlReader& reader) {
    const bool isAtTag = error.kind == DecodingError::Kind::Content;
    const auto place = std::make_unique<ErrorLocation>(text.substr(0, reader.position()));
    place->goTo(isAtTag ? reader.tagPosition() : reader.position());
    error.what.append(place->text()).append(", which is embedded");
    if (error.kind != DecodingError::Kind::Limit) {
        error.kind = DecodingError::Kind::Content;
    }
}

} // namespace

void ObjectDecoder::startAnswer(const Checkpoint* checkpoint, bool lenient) noexcept {
    checkpoint_ = checkpoint;
    lenient_ = lenient;
    findings_.clear();
    embedding_ = 0;
    if (tags_.isFull()) {
        tags_.clear();
        propertyHeads_.clear();
    }
    if (qualifiers_.isFull()) {
        qualifiers_.clear();
    }
}

CIMClass ObjectDecoder::decodeClass(XmlReader& reader) {
    const detail::Chunks::Scope scope(&chunks_);
    const Attributes& attributes = reader.attributes();
    CIMClass cimClass(names_.get(attributes.get("NAME")), optionalName(attributes, "SUPERCLASS"));
    PropertyNames names;
    PropertyNames* const compared = lenient_ || doubledProperties_ ? nullptr : &names;
    while (reader.nextElement()) {
        if (reader.name() == "METHOD") {
            detail::Unchecked::add(cimClass, decodeMethod(reader));
        } else if (!addProperty(cimClass, compared, reader) && !addQualifier(cimClass, reader)) {
            reader.throwUnexpected();
        }
    }
    return cimClass;
}

CIMInstance ObjectDecoder::decodeInstance(XmlReader& reader) {
    const detail::Chunks::Scope scope(&chunks_);
    CIMInstance instance(names_.get(reader.attributes().get("CLASSNAME")));
    PropertyNames names;
    PropertyNames* const compared = lenient_ || !doubledProperties_ ? &names : nullptr;
    detail::Unchecked::reserveProperties(instance, propertyCount_);
    while (reader.nextElement()) {
        if (addProperty(instance, compared, reader)) {
            continue;
        }
        // The qualifiers of an instance are deprecated (DSP0200); its class has them.
        if (reader.name() != "QUALIFIER") {
            reader.throwUnexpected();
        }
        reader.skip();
    }
    propertyCount_ = instance.getPropertyCount();
    if (!names.replaced().empty()) {
        instance = without(names.replaced(), instance);
    }
    return instance;
}

CIMInstance ObjectDecoder::decodeInstanceWithPath(XmlReader& reader) {
    const detail::Chunks::Scope scope(&chunks_);
    const std::string_view name = reader.name();
    CIMObjectPath path;
    CIMInstance instance;
    while (reader.nextElement()) {
        const bool isPath = reader.name() == "INSTANCENAME" || reader.name() == "INSTANCEPATH";
        if (isPath && path.getClassName().isNull()) {
            path = paths_.decodePath(reader);
        } else if (reader.name() == "INSTANCE" && instance.isUninitialized()) {
            instance = decodeInstance(reader);
        } else {
            reader.throwUnexpected();
        }
    }
    if (path.getClassName().isNull() || instance.isUninitialized()) {
        throwIncomplete({"the element ", name, " lacks the instance or its path"});
    }
    detail::Unchecked::setPath(instance, path);
    return instance;
}

CIMObject ObjectDecoder::decodeObject(XmlReader& reader) {
    const detail::Chunks::Scope scope(&chunks_);
    const std::string_view name = reader.name();
    CIMObjectPath path;
    CIMObject object;
    bool hasPath = false;
    bool isPathOfClass = false;
    while (reader.nextElement()) {
        if (reader.name() == "INSTANCE" && object.isUninitialized()) {
            object = decodeInstance(reader);
        } else if (reader.name() == "CLASS" && object.isUninitialized()) {
            object = decodeClass(reader);
        } else if (hasPath) {
            reader.throwUnexpected();
        } else {
            isPathOfClass = isClassPath(reader.name());
            path = paths_.decodePath(reader);
            hasPath = true;
        }
    }
    if (object.isUninitialized() || (!hasPath && name != "VALUE.OBJECT")) {
        throwIncomplete({"the element ", name, " lacks the object or its path"});
    }
    if (hasPath && isPathOfClass != object.isClass()) {
        throwIncomplete(
            {"the element ", name,
             isPathOfClass ? " has the path of a class and an instance" : " has a class and the path of an instance"});
    }
    if (hasPath) {
        detail::Unchecked::setPath(object, path);
    }
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
    const bool isArray = booleanAttribute(attributes, "ISARRAY", false);
    CIMScope scope;
    std::optional<CIMValue> value;
    const std::size_t found = findings_.count();
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
    if (findings_.count() != found) {
        findings_.within(found, "qualifier declaration " + std::string(name.getString().view()));
    }
    return CIMQualifierDecl(name, value ? *std::move(value) : CIMValue(type, isArray), scope, flavor, arraySize);
}

CIMQualifier ObjectDecoder::decodeQualifier(XmlReader& reader) {
    const std::string_view ahead = reader.textFrom(reader.tagPosition());
    if (const auto* const expected = qualifiers_.findExpected(ahead)) {
        reader.skipKnown(ahead.substr(0, expected->text.size()), expected->nodes);
        return expected->qualifier;
    }
    const std::string_view text = reader.elementUpTo("</QUALIFIER>", kLongestCachedQualifier);
    if (const auto* const known = qualifiers_.find(text)) {
        reader.skipKnown(text, known->nodes);
        return known->qualifier;
    }
    const std::size_t nodes = reader.nodes();
    const std::size_t found = findings_.count();
    CIMQualifier qualifier = decodeNewQualifier(reader);
    const bool isGood = findings_.count() == found;
    if (!isGood) {
        findings_.within(found, "qualifier " + std::string(qualifier.getName().getString().view()));
    }
    const bool isOfObjects = qualifier.getType() == CIMTYPE_OBJECT || qualifier.getType() == CIMTYPE_INSTANCE;
    if (isGood && reader.isBehind(text) && !isOfObjects) { // objects could be changed
        qualifiers_.add({std::string(text), qualifier, reader.nodes() - nodes});
    }
    return qualifier;
}

CIMQualifier ObjectDecoder::decodeNewQualifier(XmlReader& reader) {
    const detail::Chunks::Scope scope(nullptr); // it outlives the object in the cache
    const Attributes& attributes = reader.attributes();
    CIMName name = names_.get(attributes.get("NAME"));
    const CIMType type = typeOf(attributes);
    const CIMFlavor flavor = flavorOf(attributes);
    const bool propagated = booleanAttribute(attributes, "PROPAGATED", false);
    CIMValue value(type, false);
    if (reader.nextElement()) {
        value = decodeValue(type, isArrayValue(reader.name()), reader);
        if (reader.nextElement()) {
            reader.throwUnexpected();
        }
    }
    return CIMQualifier(std::move(name), std::move(value), flavor, propagated);
}

CIMMethod ObjectDecoder::decodeMethod(XmlReader& reader) {
    // A method without a return type, which CIM does not have and DSP0201 allows, counts as one that returns uint32.
    const Attributes& attributes = reader.attributes();
    const auto type = attributes.find("TYPE");
    CIMMethod method(names_.get(attributes.get("NAME")), type ? typeOf(attributes, *type) : CIMTYPE_UINT32,
                     optionalName(attributes, "CLASSORIGIN"), booleanAttribute(attributes, "PROPAGATED", false));
    const std::size_t found = findings_.count();
    while (reader.nextElement()) {
        if (!addParameter(method, reader) && !addQualifier(method, reader)) {
            reader.throwUnexpected();
        }
    }
    if (findings_.count() != found) {
        findings_.within(found, "method " + std::string(method.getName().getString().view()));
    }
    return method;
}

template <class Owner>
bool ObjectDecoder::addQualifier(Owner& owner, XmlReader& reader) {
    if (reader.name() != "QUALIFIER") {
        return false;
    }
    detail::Unchecked::add(owner, decodeQualifier(reader));
    return true;
}

inline CIMProperty ObjectDecoder::newProperty(const PropertyHead& head, CIMValue&& value) {
    return head.isDeclaration ? CIMProperty(head.name, std::move(value), head.arraySize, head.referenceClass,
                                            head.classOrigin, head.propagated)
                              : detail::Unchecked::property(head.name, std::move(value), head.propagated);
}

template <class Owner>
bool ObjectDecoder::addProperty(Owner& owner, PropertyNames* names, XmlReader& reader) {
    const PropertyHead& head =
        propertyHeads_.get(reader.tag(), [&](const StartTag& tag) { return decodePropertyHead(tag); });
    if (!head.isProperty) {
        return false;
    }
    const CIMType type = head.type;
    const bool isArray = head.isArray;
    const std::size_t nameHash = head.nameHash;
    const std::size_t found = findings_.count();
    std::optional<CIMValue> plainValue = isArray ? std::nullopt : takePlainValue(type, reader);
    bool hasValue = plainValue.has_value();
    CIMProperty property = newProperty(head, hasValue ? *std::move(plainValue) : CIMValue(type, isArray));
    while (reader.nextElement()) {
        if (isValue(reader.name()) && !hasValue) {
            detail::Unchecked::setValue(property, decodeValue(type, isArray, reader));
            hasValue = true;
        } else if (!addQualifier(property, reader)) {
            reader.throwUnexpected();
        }
    }
    if (type == CIMTYPE_STRING && property.getQualifierCount() != 0 && qualifiedEmbedding_) {
        property = withEmbedding(property, reader);
    }
    const Uint32 earlier = names ? names->add(owner, property.getName(), nameHash) : PEG_NOT_FOUND;
    if (earlier != PEG_NOT_FOUND) {
        takeDoubled(property.getName(), earlier, *names, reader);
    }
    if (findings_.count() != found) {
        findings_.within(found, property.getName().getString().view());
    }
    detail::Unchecked::add(owner, std::move(property));
    return true;
}

/// Refuses a property that the object has already, or notes it.
void ObjectDecoder::takeDoubled(const CIMName& name, Uint32 earlier, PropertyNames& names, const XmlReader& reader) {
    const std::string reason = "the property " + std::string(name.getString().view()) + " comes twice";
    if (!lenient_) {
        throwIncomplete({reason});
    }
    names.replace(earlier);
    findings_.add({LenientFinding::DOUBLED_PROPERTY, std::string(), reason, reader.tagPosition(), std::string()});
}

/// A string property whose qualifiers say that it holds embedded objects, as one of objects.
CIMProperty ObjectDecoder::withEmbedding(CIMProperty& property, XmlReader& reader) {
    const auto type = embeddedType(property);
    if (!type) {
        return property;
    }
    const CIMValue value = *type == CIMTYPE_OBJECT ? embeddedValue<CIMObject>(property.getValue(), reader)
                                                   : embeddedValue<CIMInstance>(property.getValue(), reader);
    CIMProperty embedding(property.getName(), value, property.getArraySize(), CIMName(), property.getClassOrigin(),
                          property.getPropagated());
    for (Uint32 i = 0; i < property.getQualifierCount(); ++i) {
        detail::Unchecked::add(embedding, property.getQualifier(i));
    }
    return embedding;
} // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): it does not know who counts the value's handles

template <class T>
CIMValue ObjectDecoder::embeddedValue(const CIMValue& texts, XmlReader& reader) {
    constexpr CIMType kType = detail::ValueType<T>::kType;
    if (texts.isNull()) {
        return CIMValue(kType, texts.isArray());
    }
    if (!texts.isArray()) {
        String text;
        texts.get(text);
        const std::optional<T> object = decodeQualifiedEmbedded<T>(text.view(), reader);
        return object ? CIMValue(*object) : CIMValue(kType, false);
    }
    Array<String> items;
    texts.get(items);
    Array<T> objects;
    Array<Boolean> nulls;
    for (Uint32 i = 0; i < items.size(); ++i) {
        const std::optional<T> object =
            texts.isNullElement(i) ? std::nullopt : decodeQualifiedEmbedded<T>(items[i].view(), reader);
        nulls.append(!object);
        objects.append(object ? *object : T());
    }
    return CIMValue(std::move(objects), nulls);
}

/// The object in a text of the property that the reader has just left.
template <class T>
std::optional<T> ObjectDecoder::decodeQualifiedEmbedded(std::string_view text, XmlReader& reader) {
    const Depth here{reader.depth(), embedding_};
    const std::size_t found = findings_.count();
    try {
        std::optional<T> object = decodeEmbedded<T>(text);
        findings_.moveTo(found, reader.tagPosition());
        return object;
    } catch (DecodingError& error) {
        if (lenient_ && !error.value) {
            error.value = std::string(text::beginningOf(text, kLongestExcerpt));
        }
        goOnBehind(error, here, reader);
        return std::nullopt;
    }
}

ObjectDecoder::PropertyHead ObjectDecoder::decodePropertyHead(const StartTag& tag) {
    PropertyHead head;
    if (const auto form = formOf(tag.element, kPropertyForms)) {
        head.isProperty = true;
        head.type = typeOf(*form, tag.attributes);
        head.name = names_.get(tag.attributes.get("NAME"));
        head.nameHash = PropertyNames::hashOf(head.name);
        head.isArray = isArrayForm(*form);
        const Uint32 arraySize = arraySizeOf(tag.attributes);
        head.arraySize = head.isArray ? arraySize : 0;
        head.referenceClass =
            head.type == CIMTYPE_REFERENCE ? optionalName(tag.attributes, "REFERENCECLASS") : CIMName();
        head.classOrigin = optionalName(tag.attributes, "CLASSORIGIN");
        head.propagated = booleanAttribute(tag.attributes, "PROPAGATED", false);
        head.isDeclaration = head.arraySize != 0 || !head.referenceClass.isNull() || !head.classOrigin.isNull();
    }
    return head;
}

bool ObjectDecoder::addParameter(CIMMethod& method, XmlReader& reader) {
    const auto form = formOf(reader.name(), kParameterForms);
    if (!form) {
        return false;
    }
    const Attributes& attributes = reader.attributes();
    const CIMType type = typeOf(*form, attributes);
    const Uint32 arraySize = arraySizeOf(attributes);
    CIMParameter parameter(names_.get(attributes.get("NAME")), type, isArrayForm(*form),
                           isArrayForm(*form) ? arraySize : 0,
                           type == CIMTYPE_REFERENCE ? optionalName(attributes, "REFERENCECLASS") : CIMName());
    const std::size_t found = findings_.count();
    while (reader.nextElement()) {
        if (isValue(reader.name())) {
            reader.skip(); // a default, which CIM does not have
        } else if (!addQualifier(parameter, reader)) {
            reader.throwUnexpected();
        }
    }
    if (findings_.count() != found) {
        findings_.within(found, "parameter " + std::string(parameter.getName().getString().view()));
    }
    detail::Unchecked::add(method, parameter);
    return true;
}

CIMValue ObjectDecoder::decodeValue(CIMType type, bool isArray, XmlReader& reader) {
    const Depth outside = depthOutside(reader);
    try {
        return decodeGoodValue(type, isArray, reader);
    } catch (const DecodingError& error) {
        goOnBehind(error, outside, reader);
        return CIMValue(type, isArray);
    }
}

/// The value of a scalar type where the next element is a VALUE without attributes, as it mostly is. Nothing where
/// another element, an end tag or an object comes next, which is not touched.
std::optional<CIMValue> ObjectDecoder::takePlainValue(CIMType type, XmlReader& reader) {
    return detail::visitType(type, [&](auto tag) -> std::optional<CIMValue> {
        using T = typename decltype(tag)::Type;
        if constexpr (isPlain<T>) {
            const Depth outside{reader.depth(), embedding_};
            try {
                if (const auto text = reader.takeTextOf(kValue)) {
                    auto item = decodeText<T>(*text);
                    return item ? std::optional<CIMValue>(std::in_place, *std::move(item))
                                : std::optional<CIMValue>(std::in_place, type, false);
                }
            } catch (const DecodingError& error) {
                goOnBehind(error, outside, reader);
                return CIMValue(type, false);
            }
        }
        return std::nullopt;
    });
}

/// When reading leniently, leaves the element of the invalid value and notes a finding. Otherwise, and where its XML is
/// not well-formed, rethrows the error that is being handled.
void ObjectDecoder::goOnBehind(const DecodingError& error, const Depth& outside, XmlReader& reader) {
    const bool isValue = error.kind == DecodingError::Kind::Content || error.kind == DecodingError::Kind::Incomplete;
    if (!lenient_ || !isValue) {
        throw; // NOLINT(misc-throw-by-value-catch-by-reference): called where it is caught
    }
    const std::size_t begin = reader.tagPosition();
    reader.skipBadTextTo(outside.elements);
    const std::string_view element = reader.textFrom(begin).substr(0, reader.position() - begin);
    const std::string_view text = error.value ? std::string_view(*error.value) : element;
    findings_.add({LenientFinding::UNREADABLE_VALUE, std::string(text::beginningOf(text, kLongestExcerpt)), error.what,
                   begin, std::string()});
    embedding_ = outside.embedding;
}

CIMValue ObjectDecoder::decodeGoodValue(CIMType type, bool isArray, XmlReader& reader) {
    if (reader.name() == "VALUE.NULL") {
        reader.skip();
        return CIMValue(type, isArray);
    }
    if (isArrayValue(reader.name()) != isArray) {
        reader.throwUnexpected();
    }
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
    std::optional<T> item = decodeItem<T>(reader);
    return item ? CIMValue(*std::move(item)) : CIMValue(detail::ValueType<T>::kType, false);
}

template <class T>
CIMValue ObjectDecoder::decodeArrayValue(XmlReader& reader) {
    Array<T> items;
    Array<Boolean> nulls; // no longer than up to the last one
    while (const auto isThere = nextItem(items, reader)) {
        if (!*isThere) {
            while (nulls.size() < items.size()) {
                nulls.append(false);
            }
            nulls.append(true);
            items.append(T());
        }
    }
    CIMValue value = nulls.size() == 0 ? CIMValue(std::move(items)) : CIMValue(std::move(items), nulls);
    return value;
}

/// Appends the next item of an array; false for one that is null, nothing at the end.
template <class T>
std::optional<bool> ObjectDecoder::nextItem(Array<T>& items, XmlReader& reader) {
    if constexpr (isPlain<T>) {
        const Depth outside{reader.depth(), embedding_};
        try {
            if (const auto text = reader.takeTextOf(kValue)) {
                std::optional<T> item = decodeText<T>(*text);
                if (item) {
                    items.append(*std::move(item));
                }
                return item.has_value();
            }
        } catch (const DecodingError& error) {
            goOnBehind(error, outside, reader);
            return false;
        }
    }
    return reader.nextElement() ? std::optional(appendItem(items, reader)) : std::nullopt;
}

/// False for an item that is null.
template <class T>
bool ObjectDecoder::appendItem(Array<T>& items, XmlReader& reader) {
    if (reader.name() == "VALUE.NULL") {
        reader.skip();
        return false;
    }
    const Depth outside = depthOutside(reader);
    try {
        std::optional<T> item = decodeItem<T>(reader);
        if (item) {
            items.append(*std::move(item));
        }
        return item.has_value();
    } catch (const DecodingError& error) {
        goOnBehind(error, outside, reader);
        return false;
    }
}

/// Nothing for an item that is null.
template <class T>
std::optional<T> ObjectDecoder::decodeItem(XmlReader& reader) {
    constexpr bool kReference = std::is_same_v<T, CIMObjectPath>;
    if (reader.name() != (kReference ? "VALUE.REFERENCE" : "VALUE")) {
        reader.throwUnexpected();
    }
    if constexpr (kReference) {
        return paths_.decodeReference(reader);
    } else if constexpr (isEmbedded<T>) {
        const std::size_t found = findings_.count();
        std::optional<T> object = decodeEmbedded<T>(reader.text());
        findings_.moveTo(found, reader.tagPosition());
        return object;
    } else {
        return decodeText<T>(reader.text());
    }
}

/// The class or instance that a text holds, if it holds one.
template <class T>
std::optional<T> ObjectDecoder::decodeEmbedded(std::string_view text) {
    CIMObject object = decodeEmbeddedText(text);
    if (object.isUninitialized()) {
        return std::nullopt;
    }
    if constexpr (std::is_same_v<T, CIMInstance>) {
        if (object.isClass()) {
            throwBadContent({"a class is embedded where an instance is declared"});
        }
    }
    return T(std::move(object));
}

CIMObject ObjectDecoder::decodeEmbeddedText(std::string_view text) {
    if (trimmed(text).empty()) {
        return CIMObject();
    }
    if (++embedding_ > kMaxEmbedding) {
        throwPastLimit({"objects are embedded deeper than ", std::to_string(kMaxEmbedding)});
    }
    // On the heap: embedded in one another, readers would take a good part of a small stack.
    const auto reader = std::make_unique<XmlReader>(tags_, checkpoint_, withoutByteOrderMark(text));
    CIMObject object;
    try {
        object = decodeOnlyObject(*reader);
    } catch (const EndOfText&) {
        throwBadContent({"an embedded object is not complete"});
    } catch (DecodingError& error) {
        describeEmbedded(error, withoutByteOrderMark(text), *reader);
        throw;
    }
    --embedding_;
    return object;
}

/// The object in a text that holds nothing else than white space and comments around it.
CIMObject ObjectDecoder::decodeOnlyObject(XmlReader& reader) {
    expect(XmlReader::Ahead::Element, reader);
    reader.nextElement();
    CIMObject object;
    if (reader.name() == "INSTANCE") {
        object = decodeInstance(reader);
    } else if (reader.name() == "CLASS") {
        object = decodeClass(reader);
    } else {
        throwBadContent({"the element ", reader.name(), " is embedded, which is no object"});
    }
    expect(XmlReader::Ahead::Nothing, reader);
    return object;
}

CIMName ObjectDecoder::optionalName(const Attributes& attributes, std::string_view attributeName) {
    const auto name = attributes.find(attributeName);
    return name && !name->empty() ? names_.get(*name) : CIMName();
}

} // namespace Pegasus::cimxml
