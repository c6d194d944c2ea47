#include "server/Acceptor.h"

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <exception>
#include <memory>
#include <utility>

namespace demo {

namespace {

/// How long to wait when the system has no file descriptor for another connection.
constexpr std::chrono::milliseconds kPause(10);

/// Null for none.
using Addresses = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

Addresses Resolve(const std::string& address, int port) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_PASSIVE;
    addrinfo* found = nullptr;
    const bool isFound = ::getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &found) == 0;
    return {isFound ? found : nullptr, &::freeaddrinfo};
}

/// A socket that listens; -1, and why in errno, when that is not possible.
int ListenOn(const addrinfo& address) {
    const int socket =
        ::socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, address.ai_protocol);
    if (socket < 0) {
        return socket;
    }
    const int yes = 1;
    // Not SO_REUSEPORT: it would let a second server share the port unnoticed.
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    if (::bind(socket, address.ai_addr, address.ai_addrlen) == 0 && ::listen(socket, SOMAXCONN) == 0) {
        return socket;
    }
    const int error = errno;
    ::close(socket);
    errno = error;
    return -1;
}

int Listen(const std::string& address, int port) {
    const Addresses addresses = Resolve(address, port);
    std::string reason = "the address is not one of this machine's";
    for (const addrinfo* each = addresses.get(); each != nullptr; each = each->ai_next) {
        const int socket = ListenOn(*each);
        if (socket >= 0) {
            return socket;
        }
        reason = std::strerror(errno);
    }
    throw ListenError("cannot listen on " + address + " port " + std::to_string(port) + ": " + reason);
}

} // namespace

Acceptor::Acceptor(const std::string& address, int port, const StopSignal& stop, Take take)
    : socket_(Listen(address, port)), stop_(stop), take_(std::move(take)), thread_([this] { Run(); }) {}

Acceptor::~Acceptor() {
    thread_.join();
    ::close(socket_);
}

void Acceptor::Run() {
    while (!stop_.IsRaised()) {
        std::array<pollfd, 2> handles{pollfd{socket_, POLLIN, 0}, pollfd{stop_.Handle(), POLLIN, 0}};
        ::poll(handles.data(), handles.size(), -1);
        if (handles[0].revents != 0) {
            AcceptNext();
        }
    }
}

void Acceptor::HandOver(int connection) {
    try {
        take_(connection);
    } catch (const std::exception&) { // there is no memory, or no thread, for another one
        ::close(connection);
    }
}

void Acceptor::AcceptNext() {
    const int accepted = ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC);
    if (accepted >= 0) {
        HandOver(accepted);
    } else if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
        stop_.WaitUntil(std::chrono::steady_clock::now() + kPause);
    }
}

} // namespace demo
