#include "LoopbackServer.h"

#include "Require.h"
#include "support/LoopbackAddress.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

constexpr int kQueue = 64;
constexpr int kLookInterval = 1; // in milliseconds

[[noreturn]] void ThrowErrno(const char* what) { throw std::system_error(errno, std::generic_category(), what); }

sockaddr_in SocketAddress(const std::string& address, std::uint16_t port) {
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_port = htons(port);
    Require(::inet_pton(AF_INET, address.c_str(), &name.sin_addr) == 1, "the address is one");
    return name;
}

int Listen(const std::string& address, std::uint16_t port) {
    const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int yes = 1;
    ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    const sockaddr_in name = SocketAddress(address, port);
    if (::bind(listener, reinterpret_cast<const sockaddr*>(&name), sizeof name) != 0 ||
        ::listen(listener, kQueue) != 0) {
        ThrowErrno("listen");
    }
    return listener;
}

std::uint16_t PortOf(int listener) {
    sockaddr_in name{};
    socklen_t size = sizeof name;
    ::getsockname(listener, reinterpret_cast<sockaddr*>(&name), &size);
    return ntohs(name.sin_port);
}

bool SendAll(int connection, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

/// The length of the body as the project's client writes it.
std::size_t BodySize(std::string_view head) {
    constexpr std::string_view kName = "Content-Length: ";
    const std::size_t name = head.find(kName);
    std::size_t size = 0;
    if (name != std::string_view::npos) {
        std::from_chars(head.data() + name + kName.size(), head.data() + head.size(), size);
    }
    return size;
}

} // namespace

LoopbackServer::LoopbackServer(std::uint16_t port, Silence silence)
    : address_(support::LoopbackAddress()),
      silence_(silence),
      listener_(Listen(address_, port)),
      clientState_(::open(("/proc/self/task/" + std::to_string(::gettid()) + "/stat").c_str(), O_RDONLY | O_CLOEXEC)),
      port_(PortOf(listener_)),
      thread_([this] { Serve(); }) {}

LoopbackServer::~LoopbackServer() {
    ::shutdown(listener_, SHUT_RDWR);
    thread_.join();
    ::close(listener_);
    ::close(clientState_);
}

void LoopbackServer::SetAnswers(Answers answers) {
    const std::lock_guard<std::mutex> lock(mutex_);
    answers_ = std::move(answers);
}

void LoopbackServer::Serve() {
    while (true) {
        const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0 && errno != ECONNABORTED && errno != EINTR) {
            return;
        }
        if (connection >= 0) {
            ServeConnection(connection);
            ::close(connection);
        }
    }
}

void LoopbackServer::ServeConnection(int connection) {
    std::string unread;
    while (const auto request = ReadRequest(connection, unread)) {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto answer = answers_ ? answers_(*request) : std::nullopt;
        if (!answer || !SendAll(connection, *answer)) {
            return;
        }
    }
}

std::optional<std::string> LoopbackServer::ReadRequest(int connection, std::string& unread) {
    constexpr std::string_view kHeadEnd = "\r\n\r\n";
    std::size_t end = std::string::npos;
    while ((end = unread.find(kHeadEnd)) == std::string::npos) {
        if (!Receive(connection, unread)) {
            return std::nullopt;
        }
    }
    const std::size_t size = end + kHeadEnd.size() + BodySize(std::string_view(unread).substr(0, end));
    while (unread.size() < size) {
        if (!Receive(connection, unread)) {
            return std::nullopt;
        }
    }
    std::string request = unread.substr(0, size);
    unread.erase(0, size);
    return request;
}

bool LoopbackServer::Receive(int connection, std::string& unread) {
    char buffer[4096];
    if (!WaitForInput(connection)) {
        return false;
    }
    const ssize_t received = ::recv(connection, buffer, sizeof buffer, 0);
    if (received <= 0) {
        return false;
    }
    unread.append(buffer, static_cast<std::size_t>(received));
    return true;
}

/// False when the client sleeps although nothing is on its way to it: it waits for bytes that nobody will send.
bool LoopbackServer::WaitForInput(int connection) const {
    pollfd input{connection, POLLIN, 0};
    while (silence_ == Silence::kEnds) {
        const bool sleeps = ClientSleeps(); // before it is asked for input: what it sent is there when it sleeps
        if (::poll(&input, 1, 0) != 0) {
            return true;
        }
        if (sleeps) {
            return false;
        }
        if (::poll(&input, 1, kLookInterval) != 0) {
            return true;
        }
    }
    return true;
}

/// The state is the letter behind the name, which is in parentheses. What was sent to a thread on this machine wakes it
/// before the call that sends returns.
bool LoopbackServer::ClientSleeps() const {
    char text[512];
    const ssize_t size = ::pread(clientState_, text, sizeof text, 0);
    const std::string_view stat(text, size > 0 ? static_cast<std::size_t>(size) : 0);
    const std::size_t name = stat.rfind(')');
    return name != std::string_view::npos && stat.substr(name, 3) == ") S";
}
