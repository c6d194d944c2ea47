#include "http/Descriptor.h"

#include "http/SystemError.h"

#include <sys/socket.h>

#include <cerrno>

namespace Pegasus::http {

std::string Descriptor::shortage() {
    const Descriptor one(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    return !one && (errno == EMFILE || errno == ENFILE) ? systemError(errno) : std::string();
}

} // namespace Pegasus::http
