#include "http/SocketAddress.h"

#include <netdb.h>

namespace Pegasus::http {

std::string literalOf(const SocketAddress& address) {
    char host[NI_MAXHOST] = "?";
    ::getnameinfo(reinterpret_cast<const sockaddr*>(&address.bytes), address.size, host, sizeof host, nullptr, 0,
                  NI_NUMERICHOST);
    return host;
}

} // namespace Pegasus::http
