#pragma once

#include "schema/Declarations.h"
#include "schema/Instance.h"
#include "wire/XmlWriter.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace demo {

/// Which parts of a class or instance an operation asks for. Its members are named after the parameters of DSP0200.
struct Selection {
    bool localOnly = false;
    bool includeQualifiers = false;
    bool includeClassOrigin = false;
    /// The properties that are wanted; all of them without a list.
    std::optional<std::set<std::string, NameLess>> propertyList;

    bool Wants(const Property& property) const { return !propertyList || propertyList->count(property.name) != 0; }
};

// Each function writes one element of DSP0201 with everything in it.

/// CLASS
void WriteClass(XmlWriter& writer, const Class& declaration, const Selection& selection);

/// QUALIFIER.DECLARATION
void WriteQualifierDeclaration(XmlWriter& writer, const QualifierDeclaration& declaration);

/// CLASSNAME
void WriteClassName(XmlWriter& writer, const std::string& name);

/// INSTANCENAME
void WriteInstanceName(XmlWriter& writer, const ObjectPath& path);

/// Where objects are: a host, and a namespace as in "root/cimv2".
struct NamespacePath {
    std::string host;
    std::string nameSpace;
};

/// CLASSPATH
void WriteClassPath(XmlWriter& writer, const NamespacePath& location, const std::string& className);

/// INSTANCEPATH
void WriteInstancePath(XmlWriter& writer, const NamespacePath& location, const ObjectPath& path);

/// PARAMVALUE of an output parameter of that CIM type.
void WriteOutputParameter(XmlWriter& writer, std::string_view name, std::string_view type, std::string_view text);

/// VALUE, VALUE.ARRAY, VALUE.REFERENCE, or nothing for null.
void WriteValue(XmlWriter& writer, const Value& value);

/// INSTANCE, of the instance's class. Properties that shape, the instance's class or a superclass of it, does not have
/// are left out.
void WriteInstance(XmlWriter& writer, const Class& declaration, const Class& shape, const Instance& instance,
                   const Selection& selection);

/// An INSTANCE with everything in it as a text, which is the value of a property with the qualifier EmbeddedInstance.
std::string EmbeddedInstanceText(const Class& declaration, const Instance& instance);

} // namespace demo
