#pragma once

#include "http/HttpHead.h"

#include <string>
#include <string_view>

namespace Pegasus::http {

/// Whether a 401 answer offers HTTP Basic authentication (RFC 7617) in any of its challenges.
bool offersBasicAuthentication(const HttpFields& fields);

/// The value of the Authorization header for Basic authentication.
std::string basicAuthorization(std::string_view user, std::string_view password);

} // namespace Pegasus::http
