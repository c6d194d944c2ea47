#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>

#include <string>
#include <string_view>

// Writes texts and paths as CIM-XML (DSP0201).

namespace Pegasus {
inline namespace bundled {
namespace detail {

/// Appends text with the characters that XML reserves, and white space that an attribute would lose, as references.
void appendEscaped(std::string& out, std::string_view text);

/// A start tag with the attribute NAME, up to `end`.
void appendNamed(std::string& out, std::string_view element, std::string_view name, std::string_view end);

/// A VALUE element.
void appendTextValue(std::string& out, std::string_view text);

void appendNamespacePath(std::string& out, const CIMNamespaceName& nameSpace);
void appendClassName(std::string& out, const CIMName& name);

/// INSTANCENAME. Throws MalformedObjectNameException when the value of a reference key is not the text form of a path,
/// as do the two below.
void appendInstanceName(std::string& out, const CIMObjectPath& path);

/// INSTANCENAME, or CLASSNAME for a path without keys.
void appendObjectName(std::string& out, const CIMObjectPath& path);

/// VALUE.REFERENCE.
void appendReference(std::string& out, const CIMObjectPath& path);

} // namespace detail
} // namespace bundled
} // namespace Pegasus
