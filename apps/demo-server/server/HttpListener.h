#pragma once

#include "server/AccessLog.h"
#include "server/CimService.h"
#include "server/ListenerLimits.h"
#include "server/TlsContext.h"
#include "server/Users.h"

#include <memory>
#include <stdexcept>
#include <string>

namespace demo {

/// A port that cannot be listened on. The text names it and says why.
class ListenError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

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
    std::string Url() const;

  private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace demo
