#pragma once

#include <Pegasus/Common/CIMValue.h>

namespace Pegasus {
inline namespace bundled {
namespace detail {

/// Stands for a C++ type where a function takes a type.
template <class T>
struct TypeTag {
    using Type = T;
};

/// Calls `visitor` with the tag of the C++ type that holds scalars of the CIM type.
template <class Visitor>
auto visitType(CIMType type, Visitor&& visitor) {
    switch (type) {
    case CIMTYPE_BOOLEAN:
        return visitor(TypeTag<Boolean>());
    case CIMTYPE_UINT8:
        return visitor(TypeTag<Uint8>());
    case CIMTYPE_SINT8:
        return visitor(TypeTag<Sint8>());
    case CIMTYPE_UINT16:
        return visitor(TypeTag<Uint16>());
    case CIMTYPE_SINT16:
        return visitor(TypeTag<Sint16>());
    case CIMTYPE_UINT32:
        return visitor(TypeTag<Uint32>());
    case CIMTYPE_SINT32:
        return visitor(TypeTag<Sint32>());
    case CIMTYPE_UINT64:
        return visitor(TypeTag<Uint64>());
    case CIMTYPE_SINT64:
        return visitor(TypeTag<Sint64>());
    case CIMTYPE_REAL32:
        return visitor(TypeTag<Real32>());
    case CIMTYPE_REAL64:
        return visitor(TypeTag<Real64>());
    case CIMTYPE_CHAR16:
        return visitor(TypeTag<Char16>());
    case CIMTYPE_STRING:
        return visitor(TypeTag<String>());
    case CIMTYPE_DATETIME:
        return visitor(TypeTag<CIMDateTime>());
    case CIMTYPE_REFERENCE:
        return visitor(TypeTag<CIMObjectPath>());
    case CIMTYPE_OBJECT:
        return visitor(TypeTag<CIMObject>());
    case CIMTYPE_INSTANCE:
        return visitor(TypeTag<CIMInstance>());
    }
    throw TypeMismatchException("the value's type is none of CIM");
}

} // namespace detail
} // namespace bundled
} // namespace Pegasus
