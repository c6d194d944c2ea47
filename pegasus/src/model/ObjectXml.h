#pragma once

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>

#include <string>

namespace Pegasus {
inline namespace bundled {
namespace detail {

/// Appends the CLASS or INSTANCE element of CIM-XML (DSP0201, 5.2.3), without white space between elements.
void appendXml(std::string& out, const CIMClass& cimClass);
void appendXml(std::string& out, const CIMInstance& instance);

} // namespace detail
} // namespace bundled
} // namespace Pegasus
