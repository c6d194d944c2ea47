#pragma once

#include "web/WebAccess.h"
#include "web/WebRequest.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace cimhttp {

/// Where to listen, on any free port where that is 0: `127.0.0.1:9989`, `[::1]:9989`, `:9989` for all addresses.
struct WebPlace {
    std::string address;
    int port;

    /// Throws Failure(kUsage) for another text.
    static WebPlace In(const std::string& text);
};

struct WebLimits {
    std::size_t connections = 512; ///< those beyond it are closed
    std::size_t threads = 64;      ///< requests that are answered at once
    std::size_t headerBytes = std::size_t{16} << 10U;
    std::size_t bodyBytes = 0;         ///< what POST may send; 0: only GET and HEAD are answered
    std::chrono::seconds idle{120};    ///< between two requests
    std::chrono::seconds transfer{30}; ///< for the head of a request, and for taking an answer
};

/// A web server for GET and HEAD, and POST where the limits let it, over HTTP/1.1 or HTTPS.
class WebServer {
  public:
    /// Listens from now on. Throws Failure(kUsage) where it cannot, or where the access' files cannot be used.
    WebServer(const WebPlace& place, const WebAccess& access, WebHandler handler, const WebLimits& limits = {});

    /// Takes no more connections, and waits for requests that are being answered.
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    /// `http://127.0.0.1:9989`, with the port that it listens on.
    std::string Url() const;

    int Port() const;

  private:
    class Implementation;
    const std::unique_ptr<Implementation> implementation_;
};

} // namespace cimhttp
