#pragma once

#include "web/WebRequest.h"

#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace cimhttp {

/// Lets the user's own browser in, and nobody else: whoever has the address with the token, once, and from then on
/// whoever has the cookie that comes in return. Pages of other sites are kept out, also those whose name has come to
/// mean this machine. For several threads.
class BrowserGate {
  public:
    /// `address` and `port` are where the server listens.
    BrowserGate(const std::string& address, int port);

    /// The address that lets in, below the server's URL: `/enter?token=…`. It leads on to `page`, `/#/s/lab`.
    std::string Entrance() const;

    /// What is answered to a request that does not come from a page of this server; nothing to one that does.
    std::optional<WebAnswer> Refusal(const WebRequest& request) const;

    /// Whether a request asks to be let in.
    static bool IsEntrance(const WebRequest& request);

    /// Lets it in, if it has the token and nobody had it before, and leads on to `page`, `/#/s/lab`.
    WebAnswer Enter(const WebRequest& request, const std::string& page);

  private:
    bool IsForThisServer(const WebRequest& request) const;
    bool IsFromThisServer(const WebRequest& request) const;
    bool HasCookie(const WebRequest& request) const;

    const std::vector<std::string> hosts_; ///< by which this server is called
    const std::string token_;
    const std::string cookieName_;
    const std::string cookie_;
    std::mutex mutex_;
    bool isUsed_ = false; ///< the token
};

} // namespace cimhttp
