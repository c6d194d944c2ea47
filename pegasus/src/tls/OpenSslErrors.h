#pragma once

#include <string>

namespace Pegasus::tls {

/// What OpenSSL says of one of its error codes.
std::string openSslText(unsigned long code);

/// What OpenSSL says of the last error in this thread, which it forgets then.
std::string takeOpenSslError();

} // namespace Pegasus::tls
