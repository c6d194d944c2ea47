#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <string>
#include <string_view>

namespace NQORVYX20 {

/// The UTF-8 text of a remote string or name. The project's own library gives it as it keeps it.
inline std::string ToStdString(const Pegasus::String& text) {
#if __has_include(<Pegasus/Client/ClientLimits.h>)
    return text.view().data();
#else
    return static_cast<const char*>(text.getCString());
#endif
}

inline std::string ToStdString(const Pegasus::CIMName& name) { return ToStdString(name.getString()); }

/// A text of the host's for the client library, which may refuse one that is not UTF-8; the project's own sends its
/// bytes as they are, also those of a password in another encoding.
inline Pegasus::String ToRemoteText(const std::string& text) {
#if __has_include(<Pegasus/Client/ClientLimits.h>)
    return Pegasus::String(std::string_view(text.c_str()));
#else
    return Pegasus::String(text.c_str());
#endif
}

} // namespace NQORVYX20
