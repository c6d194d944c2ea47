#pragma once

namespace Pegasus {
inline namespace bundled {

/// The types of CIM values. `object` is an embedded class or instance, `instance` an embedded instance.
enum CIMType {
    CIMTYPE_BOOLEAN,
    CIMTYPE_UINT8,
    CIMTYPE_SINT8,
    CIMTYPE_UINT16,
    CIMTYPE_SINT16,
    CIMTYPE_UINT32,
    CIMTYPE_SINT32,
    CIMTYPE_UINT64,
    CIMTYPE_SINT64,
    CIMTYPE_REAL32,
    CIMTYPE_REAL64,
    CIMTYPE_CHAR16,
    CIMTYPE_STRING,
    CIMTYPE_DATETIME,
    CIMTYPE_REFERENCE,
    CIMTYPE_OBJECT,
    CIMTYPE_INSTANCE
};

/// The type's name as CIM-XML and MOF write it, for example "uint8"; "unknown" for a number that is no type.
const char* cimTypeToString(CIMType type) noexcept;

} // namespace bundled
} // namespace Pegasus
