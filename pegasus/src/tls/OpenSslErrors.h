#pragma once

#include <string>

namespace Pegasus::http {

/// What OpenSSL says of one of its error codes.
std::string openSslText(unsigned long code);

/// The same of what went wrong last in this thread, which is forgotten.
std::string takeOpenSslError();

} // namespace Pegasus::http
