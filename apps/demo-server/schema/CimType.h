#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace demo {

/// The intrinsic types of DSP0004, and references.
enum class CimType {
    kBoolean,
    kUint8,
    kSint8,
    kUint16,
    kSint16,
    kUint32,
    kSint32,
    kUint64,
    kSint64,
    kReal32,
    kReal64,
    kChar16,
    kString,
    kDatetime,
    kReference,
};

/// The name that the TYPE attribute of CIM-XML has for a type.
std::string_view TypeName(CimType type);

/// The type of a name, nothing if it names none.
std::optional<CimType> TypeFromName(std::string_view name);

/// Whether values of the type are numbers (and keys of it VALUETYPE="numeric").
bool IsNumeric(CimType type);

/// The one form for the texts that stand for the same value of the type, as "7" for "+007" and "0x7". Keys are compared
/// in it. Nothing when the text is no value of the type.
std::optional<std::string> NormalForm(CimType type, const std::string& text);

/// Whether a text is a value of the type in the form that DSP0201 gives it: in range, and complete.
bool IsValueOf(CimType type, const std::string& text);

} // namespace demo
