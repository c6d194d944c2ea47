#pragma once

#include "http/Endpoint.h"
#include "support/LoopbackAddress.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace Pegasus::http {

/// A port that listens and accepts nobody: its queue of connections is full.
class FullPort {
  public:
    explicit FullPort(std::string host = support::LoopbackAddress()) : host_(std::move(host)) {
        ::inet_pton(AF_INET, host_.c_str(), &address_.sin_addr);
        const int listener = newSocket();
        socklen_t size = sizeof address_;
        if (::bind(listener, reinterpret_cast<sockaddr*>(&address_), size) != 0 || ::listen(listener, 0) != 0 ||
            ::getsockname(listener, reinterpret_cast<sockaddr*>(&address_), &size) != 0) {
            throw std::system_error(errno, std::generic_category(), "listen");
        }
        for (int i = 0; i < 16 && !isFull_; ++i) {
            const int client = newSocket();
            static_cast<void>(::connect(client, reinterpret_cast<sockaddr*>(&address_), size)); // in progress
            pollfd connected{client, POLLOUT, 0};
            isFull_ = ::poll(&connected, 1, kQuiet) == 0;
        }
    }
    ~FullPort() { std::for_each(sockets_.begin(), sockets_.end(), &::close); }
    FullPort(const FullPort&) = delete;
    FullPort& operator=(const FullPort&) = delete;

    bool isFull() const { return isFull_; }
    Endpoint endpoint() const { return {host_, ntohs(address_.sin_port)}; }

  private:
    static constexpr int kQuiet = 100; // milliseconds without being accepted

    int newSocket() {
        sockets_.push_back(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
        return sockets_.back();
    }

    const std::string host_;
    std::vector<int> sockets_;
    sockaddr_in address_{AF_INET, 0, {}, {}};
    bool isFull_ = false;
};

} // namespace Pegasus::http
