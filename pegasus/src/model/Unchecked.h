#pragma once

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>

namespace Pegasus {
inline namespace bundled {
namespace detail {

/// Adds what a server sends as it is. Callers may not give an object two parts of one name, or a path of another class;
/// servers do.
struct Unchecked {
    // Defined beside the checked operations.

    static void setPath(CIMClass& cimClass, const CIMObjectPath& path);
    static void setPath(CIMInstance& instance, const CIMObjectPath& path);
    static void setPath(CIMObject& object, const CIMObjectPath& path);

    /// A property of an instance, of which no more is known.
    static CIMProperty property(const CIMName& name, CIMValue&& value, Boolean propagated);
    /// A value of the property's type, an array where the property is one.
    static void setValue(CIMProperty& property, CIMValue&& value);

    /// Makes room for so many properties.
    static void reserveProperties(CIMInstance& instance, Uint32 count);

    static void add(CIMClass& cimClass, const CIMQualifier& qualifier);
    static void add(CIMClass& cimClass, CIMProperty property);
    static void add(CIMClass& cimClass, const CIMMethod& method);
    static void add(CIMInstance& instance, const CIMQualifier& qualifier);
    static void add(CIMInstance& instance, CIMProperty property);
    static void add(CIMMethod& method, const CIMQualifier& qualifier);
    static void add(CIMMethod& method, const CIMParameter& parameter);
    static void add(CIMParameter& parameter, const CIMQualifier& qualifier);
    static void add(CIMProperty& property, const CIMQualifier& qualifier);
};

} // namespace detail
} // namespace bundled
} // namespace Pegasus
