#include "convert/RemoteValues.h"

#include "convert/RemoteText.h"
#include "convert/RemoteTypes.h"
#include "convert/StreamedText.h"

#include <boost/shared_ptr.hpp>

#include <utility>
#include <vector>

namespace NQORVYX20 {

namespace {

TCIMChar16 ToHostCharacter(const Pegasus::Char16& character) {
    // The host takes a character as the decimal digits of its code.
    return TCIMChar16(std::to_string(static_cast<Pegasus::Uint16>(character)));
}

TCIMReference ToHostReference(const Pegasus::CIMObjectPath& path) {
    TCIMReference reference{boost::shared_ptr<ICIMNamespace>(), TCIMContext()};
    auto keys = path.getKeyBindings();
    for (Pegasus::Uint32 i = 0; i < keys.size(); ++i) {
        reference.AddKeyValue(ToStdString(keys[i].getName()), TCIMValue(ToStdString(keys[i].getValue())));
    }
    return reference;
}

template <typename T>
T Read(const Pegasus::CIMValue& value) {
    T content{}; // stays as it is when the value is null
    value.get(content);
    return content;
}

/// Makes a host array of the remote elements, each turned into a host value by `convert`.
template <typename T, typename Convert>
TCIMValue ReadArray(const Pegasus::CIMValue& value, Pegasus::CIMType elementType, Convert convert) {
    auto array = Read<Pegasus::Array<T>>(value);
    std::vector<TCIMValue> elements;
    elements.reserve(array.size());
    for (Pegasus::Uint32 i = 0; i < array.size(); ++i) {
        elements.emplace_back(convert(static_cast<const T&>(array[i])));
    }
    return {pegTypeToVYXType(elementType, false), 0, std::move(elements)};
}

template <typename T>
TCIMValue ReadArray(const Pegasus::CIMValue& value, Pegasus::CIMType elementType) {
    return ReadArray<T>(value, elementType, [](const T& element) { return TCIMValue(element); });
}

void ConvertArray(const Pegasus::CIMValue& value, Pegasus::CIMType type, StreamedText& texts, TCIMValue& out) {
    switch (type) {
    case Pegasus::CIMTYPE_BOOLEAN:
        out = ReadArray<Pegasus::Boolean>(value, type);
        break;
    case Pegasus::CIMTYPE_UINT8:
        out = ReadArray<Pegasus::Uint8>(value, type);
        break;
    case Pegasus::CIMTYPE_SINT8:
        out = ReadArray<Pegasus::Sint8>(value, type);
        break;
    case Pegasus::CIMTYPE_UINT16:
        out = ReadArray<Pegasus::Uint16>(value, type);
        break;
    case Pegasus::CIMTYPE_SINT16:
        out = ReadArray<Pegasus::Sint16>(value, type);
        break;
    case Pegasus::CIMTYPE_UINT32:
        out = ReadArray<Pegasus::Uint32>(value, type);
        break;
    case Pegasus::CIMTYPE_SINT32:
        out = ReadArray<Pegasus::Sint32>(value, type);
        break;
    case Pegasus::CIMTYPE_UINT64:
        out = ReadArray<Pegasus::Uint64>(value, type);
        break;
    case Pegasus::CIMTYPE_SINT64:
        out = ReadArray<Pegasus::Sint64>(value, type);
        break;
    case Pegasus::CIMTYPE_REAL32:
        out = ReadArray<Pegasus::Real32>(value, type);
        break;
    case Pegasus::CIMTYPE_REAL64:
        out = ReadArray<Pegasus::Real64>(value, type);
        break;
    case Pegasus::CIMTYPE_CHAR16:
        out = ReadArray<Pegasus::Char16>(value, type, ToHostCharacter);
        break;
    case Pegasus::CIMTYPE_STRING:
        out = ReadArray<Pegasus::String>(value, type, [&](const auto& element) { return texts(element); });
        break;
    case Pegasus::CIMTYPE_DATETIME:
        out = ReadArray<Pegasus::CIMDateTime>(
            value, type, [&](const auto& element) { return TCIMDateTime(texts(element.toString())); });
        break;
    default:
        break;
    }
}

void ConvertScalar(const Pegasus::CIMValue& value, Pegasus::CIMType type, TCIMValue& out) {
    switch (type) {
    case Pegasus::CIMTYPE_BOOLEAN:
        out = TCIMValue(value.equal(Pegasus::CIMValue(Pegasus::Boolean(true))));
        break;
    case Pegasus::CIMTYPE_UINT8:
        out = TCIMValue(Read<Pegasus::Uint8>(value));
        break;
    case Pegasus::CIMTYPE_SINT8:
        out = TCIMValue(Read<Pegasus::Sint8>(value));
        break;
    case Pegasus::CIMTYPE_UINT16:
        out = TCIMValue(Read<Pegasus::Uint16>(value));
        break;
    case Pegasus::CIMTYPE_SINT16:
        out = TCIMValue(Read<Pegasus::Sint16>(value));
        break;
    case Pegasus::CIMTYPE_UINT32:
        out = TCIMValue(Read<Pegasus::Uint32>(value));
        break;
    case Pegasus::CIMTYPE_SINT32:
        out = TCIMValue(Read<Pegasus::Sint32>(value));
        break;
    case Pegasus::CIMTYPE_UINT64:
        out = TCIMValue(static_cast<unsigned long long>(Read<Pegasus::Uint64>(value)));
        break;
    case Pegasus::CIMTYPE_SINT64:
        out = TCIMValue(static_cast<long long>(Read<Pegasus::Sint64>(value)));
        break;
    case Pegasus::CIMTYPE_REAL32:
        out = TCIMValue(Read<Pegasus::Real32>(value));
        break;
    case Pegasus::CIMTYPE_REAL64:
        out = TCIMValue(Read<Pegasus::Real64>(value));
        break;
    case Pegasus::CIMTYPE_CHAR16:
        out = TCIMValue(ToHostCharacter(Read<Pegasus::Char16>(value)));
        break;
    case Pegasus::CIMTYPE_STRING:
        out = TCIMValue(ToStdString(Read<Pegasus::String>(value)));
        break;
    case Pegasus::CIMTYPE_DATETIME:
        out = TCIMValue(TCIMDateTime(ToStdString(Read<Pegasus::CIMDateTime>(value).toString())));
        break;
    case Pegasus::CIMTYPE_REFERENCE: {
        TCIMReference reference = ToHostReference(Read<Pegasus::CIMObjectPath>(value));
        out = TCIMValue(reference);
        break;
    }
    default:
        break;
    }
}

} // namespace

void pegValToVYX(Pegasus::CIMValue value, Pegasus::CIMType type, bool isArray, TCIMValue& out) {
    StreamedText texts;
    pegValToVYX(value, type, isArray, texts, out);
}

void pegValToVYX(const Pegasus::CIMValue& value, Pegasus::CIMType type, bool isArray, StreamedText& texts,
                 TCIMValue& out) {
    if (isArray) {
        ConvertArray(value, type, texts, out);
    } else {
        ConvertScalar(value, type, out);
    }
}

} // namespace NQORVYX20
