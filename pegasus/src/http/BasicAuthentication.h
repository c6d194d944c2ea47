#pragma once

#include "http/HttpHead.h"

#include <string>
#include <string_view>

namespace Pegasus::http {

/// Whether a 401 answer takes HTTP Basic authentication (RFC 7617): one of its challenges offers it, or there is none,
/// as with servers that say no more than that they want a login.
bool takesBasicAuthentication(const HttpFields& fields);

/// The schemes that a server's challenges offer, "Negotiate, Digest"; empty when it names none.
std::string offeredSchemes(const HttpFields& fields);

/// The value of the Authorization header for Basic authentication.
std::string basicAuthorization(std::string_view user, std::string_view password);

} // namespace Pegasus::http
