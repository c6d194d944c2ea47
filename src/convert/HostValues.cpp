#include "convert/HostValues.h"

#include "convert/EmbeddedObjects.h"
#include "convert/RemoteText.h"
#include "convert/RemoteTypes.h"

#include <string>
#include <utility>

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

/// Whether an element of an array is null, where the client library can tell.
template <typename Value>
auto IsNullElement(const Value& value, Pegasus::Uint32 index, int /*preferred*/)
    -> decltype(value.isNullElement(index)) {
    return value.isNullElement(index);
}

template <typename Value>
bool IsNullElement(const Value& /*value*/, Pegasus::Uint32 /*index*/, long /*otherwise*/) {
    return false;
}

template <typename Number>
TCIMValue ElementValue(Number number) {
    return TCIMValue(number);
}

// The client libraries do not agree on what their 64-bit types are.
TCIMValue ElementValue(Pegasus::Uint64 number) { return {static_cast<unsigned long long>(number)}; }
TCIMValue ElementValue(Pegasus::Sint64 number) { return {static_cast<long long>(number)}; }

TCIMValue ElementValue(const Pegasus::Char16& character) {
    // The host takes a character as the decimal digits of its code.
    return {TCIMChar16(std::to_string(static_cast<Pegasus::Uint16>(character)))};
}

TCIMValue ElementValue(const Pegasus::String& text) { return {ToStdString(text)}; }

TCIMValue ElementValue(const Pegasus::CIMDateTime& time) { return {TCIMDateTime(ToStdString(time.toString()))}; }

TCIMValue ElementValue(const Pegasus::CIMObjectPath& path) {
    TCIMReference reference = ToHostReference(path);
    return {reference};
}

template <typename Object>
TCIMValue EmbeddedValue(const Object& object) {
    return object.isUninitialized() ? TCIMValue(ECIMType::eCIMString, 0) : TCIMValue(ToEmbeddedObject(object).mof);
}

TCIMValue ElementValue(const Pegasus::CIMObject& object) { return EmbeddedValue(object); }
TCIMValue ElementValue(const Pegasus::CIMInstance& instance) { return EmbeddedValue(instance); }

template <typename T>
TCIMValue ScalarValue(const Pegasus::CIMValue& value) {
    T content{};
    value.get(content);
    return ElementValue(content);
}

template <typename T>
TCIMValue ArrayValue(const Pegasus::CIMValue& value) {
    const TCIMValue::TCIMType type = HostType(value.getType(), false);
    Pegasus::Array<T> array;
    value.get(array);
    std::vector<TCIMValue> elements;
    elements.reserve(array.size());
    for (Pegasus::Uint32 i = 0; i < array.size(); ++i) {
        elements.push_back(IsNullElement(value, i, 0) ? TCIMValue(type, 0)
                                                      : ElementValue(static_cast<const T&>(array[i])));
    }
    return {type, 0, elements};
}

template <typename T>
TCIMValue Converted(const Pegasus::CIMValue& value) {
    return value.isArray() ? ArrayValue<T>(value) : ScalarValue<T>(value);
}

/// Calls back with each embedded object, an uninitialised one for null.
template <typename Object, typename Visit>
void VisitEmbedded(const Pegasus::CIMValue& value, const Visit& visit) {
    if (!value.isArray()) {
        Object object;
        value.get(object);
        visit(object);
        return;
    }
    Pegasus::Array<Object> array;
    value.get(array);
    for (Pegasus::Uint32 i = 0; i < array.size(); ++i) {
        visit(static_cast<const Object&>(array[i]));
    }
}

} // namespace

TCIMValue::TCIMType HostType(Pegasus::CIMType type, bool isArray) {
    const bool isEmbedded = type == Pegasus::CIMTYPE_OBJECT || type == Pegasus::CIMTYPE_INSTANCE;
    return pegTypeToVYXType(isEmbedded ? Pegasus::CIMTYPE_STRING : type, isArray);
}

TCIMValue HostValue(const Pegasus::CIMValue& value) {
    if (value.isNull()) {
        return {HostType(value.getType(), value.isArray()), 0};
    }
    switch (value.getType()) {
    case Pegasus::CIMTYPE_BOOLEAN:
        return Converted<Pegasus::Boolean>(value);
    case Pegasus::CIMTYPE_UINT8:
        return Converted<Pegasus::Uint8>(value);
    case Pegasus::CIMTYPE_SINT8:
        return Converted<Pegasus::Sint8>(value);
    case Pegasus::CIMTYPE_UINT16:
        return Converted<Pegasus::Uint16>(value);
    case Pegasus::CIMTYPE_SINT16:
        return Converted<Pegasus::Sint16>(value);
    case Pegasus::CIMTYPE_UINT32:
        return Converted<Pegasus::Uint32>(value);
    case Pegasus::CIMTYPE_SINT32:
        return Converted<Pegasus::Sint32>(value);
    case Pegasus::CIMTYPE_UINT64:
        return Converted<Pegasus::Uint64>(value);
    case Pegasus::CIMTYPE_SINT64:
        return Converted<Pegasus::Sint64>(value);
    case Pegasus::CIMTYPE_REAL32:
        return Converted<Pegasus::Real32>(value);
    case Pegasus::CIMTYPE_REAL64:
        return Converted<Pegasus::Real64>(value);
    case Pegasus::CIMTYPE_CHAR16:
        return Converted<Pegasus::Char16>(value);
    case Pegasus::CIMTYPE_STRING:
        return Converted<Pegasus::String>(value);
    case Pegasus::CIMTYPE_DATETIME:
        return Converted<Pegasus::CIMDateTime>(value);
    case Pegasus::CIMTYPE_REFERENCE:
        return Converted<Pegasus::CIMObjectPath>(value);
    case Pegasus::CIMTYPE_OBJECT:
        return Converted<Pegasus::CIMObject>(value);
    case Pegasus::CIMTYPE_INSTANCE:
        return Converted<Pegasus::CIMInstance>(value);
    default:
        return {};
    }
}

std::vector<EmbeddedObject> EmbeddedObjectsIn(const Pegasus::CIMValue& value) {
    std::vector<EmbeddedObject> objects;
    if (value.isNull()) {
        return objects;
    }
    const auto add = [&](const auto& object) {
        objects.push_back(object.isUninitialized() ? EmbeddedObject() : ToEmbeddedObject(object));
    };
    if (value.getType() == Pegasus::CIMTYPE_OBJECT) {
        VisitEmbedded<Pegasus::CIMObject>(value, add);
    } else if (value.getType() == Pegasus::CIMTYPE_INSTANCE) {
        VisitEmbedded<Pegasus::CIMInstance>(value, add);
    }
    return objects;
}

TCIMReference ToHostReference(const Pegasus::CIMObjectPath& path) {
    TCIMReference reference{boost::shared_ptr<ICIMNamespace>(), TCIMContext()};
    reference.SetHost(ToStdString(path.getHost()));
    if (!path.getNameSpace().isNull()) {
        reference.SetNamespaceName(ToStdString(path.getNameSpace().getString()));
    }
    if (!path.getClassName().isNull()) {
        reference.SetClassName(ToStdString(path.getClassName()));
    }
    const auto& keys = path.getKeyBindings();
    for (Pegasus::Uint32 i = 0; i < keys.size(); ++i) {
        reference.AddKeyValue(ToStdString(keys[i].getName()), HostKeyValue(keys[i], ECIMType::eCIMUnknown));
    }
    return reference;
}

ICIMQualifierDecl::EScope HostScope(const Pegasus::CIMScope& scope) {
    const std::pair<const Pegasus::CIMScope&, ICIMQualifierDecl::EScope> all[] = {
        {Pegasus::CIMScope::CLASS, ICIMQualifierDecl::eScopeClass},
        {Pegasus::CIMScope::ASSOCIATION, ICIMQualifierDecl::eScopeAssociation},
        {Pegasus::CIMScope::INDICATION, ICIMQualifierDecl::eScopeIndication},
        {Pegasus::CIMScope::PROPERTY, ICIMQualifierDecl::eScopeProperty},
        {Pegasus::CIMScope::REFERENCE, ICIMQualifierDecl::eScopeReference},
        {Pegasus::CIMScope::METHOD, ICIMQualifierDecl::eScopeMethod},
        {Pegasus::CIMScope::PARAMETER, ICIMQualifierDecl::eScopeParameter}};
    unsigned bits = 0;
    for (const auto& [remote, host] : all) {
        bits |= scope.hasScope(remote) ? host : 0U;
    }
    return static_cast<ICIMQualifierDecl::EScope>(bits);
}

ICIMQualifierDecl::EFlavor HostFlavor(const Pegasus::CIMFlavor& flavor) {
    const std::pair<const Pegasus::CIMFlavor&, ICIMQualifierDecl::EFlavor> all[] = {
        {Pegasus::CIMFlavor::OVERRIDABLE, ICIMQualifierDecl::eFlavorEnableOverride},
        {Pegasus::CIMFlavor::TOSUBCLASS, ICIMQualifierDecl::eFlavorToSubclass},
        {Pegasus::CIMFlavor::TRANSLATABLE, ICIMQualifierDecl::eFlavorTranslatable}};
    unsigned bits = 0;
    for (const auto& [remote, host] : all) {
        bits |= flavor.hasFlavor(remote) ? host : 0U;
    }
    return static_cast<ICIMQualifierDecl::EFlavor>(bits);
}

} // namespace NQORVYX20
