#pragma once

#include "browse/BrowserApi.h"
#include "browse/BrowserGate.h"
#include "web/WebRequest.h"

#include <string>

namespace cimhttp {

/// All that is served to the user's browser: the gate before it, the pages, what their scripts ask. For several
/// threads.
class Browser {
  public:
    /// `address` and `port` are where it is served. All must outlive the object.
    Browser(const Plugin& plugin, const Options& options, const std::string& address, int port);

    WebAnswer Answer(const WebRequest& request);

    /// See BrowserGate.
    std::string Entrance() const { return gate_.Entrance(); }

    /// To be called now and then.
    void EndIdle() { api_.EndIdle(); }

  private:
    WebAnswer Unprotected(const WebRequest& request);
    std::string FirstPage() const;

    BrowserGate gate_;
    BrowserApi api_;
};

} // namespace cimhttp
