#pragma once

#include <string>
#include <string_view>

namespace Pegasus::http {

/// The head of a request or an answer for others to see: without the values of the fields that hold credentials.
std::string withoutCredentials(std::string_view head);

} // namespace Pegasus::http
