#pragma once

#include <netdb.h>

#include <memory>
#include <string>

namespace cimhttp {

/// The addresses of a port of a host, looked up when the object is made.
class HostAddresses {
  public:
    HostAddresses(const std::string& host, int port);

    /// Why the host could not be looked up, a code for gai_strerror(); 0 when it was.
    int Error() const { return error_; }

    /// The same in words.
    const std::string& ErrorText() const { return errorText_; }

    /// The first of a list; null after an error. Valid as long as the object.
    const addrinfo* First() const { return list_.get(); }

  private:
    struct Free {
        void operator()(addrinfo* list) const { ::freeaddrinfo(list); }
    };

    std::unique_ptr<addrinfo, Free> list_;
    int error_;
    std::string errorText_;
};

} // namespace cimhttp
