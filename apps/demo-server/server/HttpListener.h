#pragma once

#include "server/Acceptor.h"
#include "server/AccessLog.h"
#include "server/CimService.h"
#include "server/ConnectionThreads.h"
#include "server/ListenerLimits.h"
#include "server/ListenerState.h"
#include "server/TlsContext.h"
#include "server/Users.h"

#include <string>

namespace demo {

/// CIM-XML over HTTP or HTTPS (DSP0200) at one address and port.
class HttpListener {
  public:
    /// Listens from now on. All but the address must outlive the listener. Without users everybody is served; the log
    /// may be null; with a context the port speaks TLS only. Throws ListenError.
    HttpListener(const CimService& service, const Users& users, AccessLog* log, const std::string& address, int port,
                 const TlsContext* tls, const ListenerLimits& limits = {});

    /// Stops: takes no more connections, closes idle ones, gives the answers that are on their way a few seconds.
    ~HttpListener();

    HttpListener(const HttpListener&) = delete;
    HttpListener& operator=(const HttpListener&) = delete;

    /// As in "http://127.0.0.1:5988".
    std::string Url() const { return url_; }

  private:
    void Serve(int socket, ConnectionThreads::Clock::time_point made);

    const TlsContext* const tls_;
    const std::string url_;
    ListenerState state_;
    ConnectionThreads threads_;
    Acceptor acceptor_;
};

} // namespace demo
