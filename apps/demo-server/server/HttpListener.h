#pragma once

#include "server/Certificate.h"
#include "server/CimService.h"
#include "server/Credentials.h"

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
    /// Listens from now on. The service, the credentials and the certificate must outlive the listener. Without
    /// credentials everybody is served; with a certificate the port speaks TLS only. Throws ListenError.
    HttpListener(const CimService& service, const std::string& address, int port, const Credentials* credentials,
                 const Certificate* certificate);

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
