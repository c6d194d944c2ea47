#pragma once

#include "replay/Recording.h"
#include "server/TlsContext.h"

#include <functional>
#include <memory>
#include <string>

namespace demo {

/// Answers the requests of clients at one address and port as a server did while it was recorded. Nobody has to log in.
/// A request that was not recorded gets HTTP status 501 and a text that names it.
class ReplayListener {
  public:
    /// Is told of a request that was not recorded; called from several threads, though one at a time.
    using OnUnknown = std::function<void(const std::string& request)>;

    /// Listens from now on. The recording must outlive the listener; with a context the port speaks TLS only. Throws
    /// ListenError.
    ReplayListener(Recording& recording, OnUnknown onUnknown, const std::string& address, int port,
                   const TlsContext* tls);
    ~ReplayListener();
    ReplayListener(const ReplayListener&) = delete;
    ReplayListener& operator=(const ReplayListener&) = delete;

    /// As in "http://127.0.0.1:5988".
    std::string Url() const;

  private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace demo
