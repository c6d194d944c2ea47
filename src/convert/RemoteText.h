#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <string>

namespace NQORVYX20 {

/// The UTF-8 text of a remote string or name.
inline std::string ToStdString(const Pegasus::String& text) { return static_cast<const char*>(text.getCString()); }

inline std::string ToStdString(const Pegasus::CIMName& name) { return ToStdString(name.getString()); }

} // namespace NQORVYX20
