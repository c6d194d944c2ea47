#pragma once

#include <string>

namespace NQORVYX20 {

/// The one form of all spellings with which a server's name or address can be given to connect(): in lower case,
/// without brackets and trailing dots; an address as it is usually written, without a zone, and that of IPv4 also where
/// it stands in IPv6; "localhost" for an empty text.
std::string NormalHost(const std::string& host);

/// False for a text that resolvers may take for another name than it seems: one with a backslash, a blank, or a
/// character that does not show.
bool IsPlainHost(const std::string& host);

} // namespace NQORVYX20
