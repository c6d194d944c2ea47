#include "FirstConnectionOnly.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <system_error>

namespace {

constexpr std::chrono::milliseconds kLookInterval{20}; // between two looks whether to stop

sockaddr_in AddressOf(const std::string& address, std::uint16_t port) {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    ::inet_pton(AF_INET, address.c_str(), &result.sin_addr);
    return result;
}

/// A socket that is bound or connected by `function`.
template <typename Function>
int SocketAt(const std::string& address, std::uint16_t port, Function function) {
    const sockaddr_in place = AddressOf(address, port);
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    if (function(socket, reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0) {
        throw std::system_error(errno, std::generic_category(), "port " + std::to_string(port));
    }
    return socket;
}

/// False at the end of the stream.
bool Forward(int from, int to) {
    std::array<char, 4096> block{};
    const ssize_t size = ::recv(from, block.data(), block.size(), 0);
    return size > 0 && ::send(to, block.data(), static_cast<std::size_t>(size), MSG_NOSIGNAL) == size;
}

} // namespace

FirstConnectionOnly::FirstConnectionOnly(const std::string& address, std::uint16_t port, std::uint16_t serverPort)
    : listener_(SocketAt(address, port, &::bind)), server_(SocketAt(address, serverPort, &::connect)) {
    ::listen(listener_, SOMAXCONN);
    thread_ = std::thread([this] { Run(); });
}

FirstConnectionOnly::~FirstConnectionOnly() {
    isStopping_ = true;
    thread_.join();
    for (const int socket : {listener_, server_, client_}) {
        ::close(socket);
    }
}

void FirstConnectionOnly::Run() {
    while (!isStopping_) {
        std::array<pollfd, 3> awaited{{{listener_, POLLIN, 0}, {client_, POLLIN, 0}, {server_, POLLIN, 0}}};
        ::poll(awaited.data(), awaited.size(), static_cast<int>(kLookInterval.count()));
        if (awaited[0].revents != 0) {
            Accept();
        }
        const bool isOpen = (awaited[1].revents == 0 || Forward(client_, server_)) &&
                            (awaited[2].revents == 0 || client_ < 0 || Forward(server_, client_));
        if (!isOpen) {
            EndFirst();
        }
    }
}

void FirstConnectionOnly::EndFirst() {
    for (int* const socket : {&server_, &client_}) {
        ::close(*socket);
        *socket = -1; // which nobody waits for
    }
}

void FirstConnectionOnly::Accept() {
    const int socket = ::accept(listener_, nullptr, nullptr);
    if (!hasFirst_) {
        client_ = socket;
        hasFirst_ = true;
    } else {
        ::close(socket);
    }
}
