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

    static void add(CIMClass& cimClass, const CIMQualifier& qualifier);
    static void add(CIMClass& cimClass, const CIMProperty& property);
    static void add(CIMClass& cimClass, const CIMMethod& method);
    static void add(CIMInstance& instance, const CIMQualifier& qualifier);
    static void add(CIMInstance& instance, const CIMProperty& property);
    static void add(CIMMethod& method, const CIMQualifier& qualifier);
    static void add(CIMMethod& method, const CIMParameter& parameter);
    static void add(CIMParameter& parameter, const CIMQualifier& qualifier);
    static void add(CIMProperty& property, const CIMQualifier& qualifier);
};

} // namespace detail
} // namespace bundled
} // namespace Pegasus
