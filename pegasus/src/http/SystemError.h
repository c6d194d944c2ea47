#pragma once

#include <string>
#include <system_error>

namespace Pegasus::http {

/// What the system says of an error number.
inline std::string systemError(int number) { return std::system_category().message(number); }

} // namespace Pegasus::http
