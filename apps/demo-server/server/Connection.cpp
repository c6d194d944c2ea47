#include "server/Connection.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <string_view>

namespace demo {

namespace {

/// How long an idle connection is kept.
constexpr std::chrono::seconds kIdleLimit(30);
/// How long a client may take for a whole request, or for the TLS handshake.
constexpr std::chrono::seconds kRequestLimit(15);
/// How long a client may take for some bytes of an answer.
constexpr std::chrono::seconds kWriteLimit(30);
/// How long answers may still take when the server stops.
constexpr std::chrono::seconds kStopLimit(3);
/// How long a client may take to notice that the connection ends.
constexpr std::chrono::seconds kCloseLimit(2);

// The events of poll() in the type that it takes.
constexpr short kNothing = 0;
constexpr short kReadable = POLLIN;
constexpr short kWritable = POLLOUT;

constexpr std::string_view kEndOfHeader = "\r\n\r\n";

} // namespace

Connection::Connection(int socket, SSL_CTX* context, const StopSignal& stop)
    : socket_(socket),
      tls_(context ? SSL_new(context) : nullptr, &SSL_free),
      stop_(stop),
      isReady_(context == nullptr) {
    ::fcntl(socket_, F_SETFL, ::fcntl(socket_, F_GETFL) | O_NONBLOCK);
    if (tls_) {
        SSL_set_fd(tls_.get(), socket_);
        SSL_set_mode(tls_.get(), SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER);
    }
}

Connection::~Connection() {
    Close();
    ::close(socket_);
}

bool Connection::WaitForRequest() {
    if (!isReady_ && !Handshake())
        return false;
    allowance_ = kMaxHeaderBytes;
    headerEnd_ = 0;
    headerLine_ = 0;
    hasTooLongHeaders_ = false;
    const auto idleDeadline = Clock::now() + kIdleLimit;
    while (begin_ == end_) {
        if (stop_.IsRaised())
            return false;
        const ssize_t count = TryRead(buffer_.data(), buffer_.size());
        if (count > 0) {
            begin_ = 0;
            end_ = static_cast<std::size_t>(count);
        } else if (wanted_ == kNothing || !Wait(wanted_, idleDeadline, true)) {
            return false;
        }
    }
    requestDeadline_ = Clock::now() + kRequestLimit;
    return true;
}

ssize_t Connection::Read(char* data, std::size_t size) {
    if (begin_ == end_ && !Fill(requestDeadline_))
        return wanted_ == kNothing ? 0 : -1;
    const std::size_t count = std::min({size, end_ - begin_, allowance_});
    if (count == 0) {
        hasTooLongHeaders_ = headerEnd_ < kEndOfHeader.size();
        return -1;
    }
    std::memcpy(data, buffer_.data() + begin_, count);
    begin_ += count;
    allowance_ -= count;
    CountHeader(data, count);
    return static_cast<ssize_t>(count);
}

ssize_t Connection::Write(const char* data, std::size_t size) {
    const auto deadline = Clock::now() + kWriteLimit;
    for (;;) {
        if (LimitedByStop(deadline) < Clock::now())
            return -1;
        const ssize_t count = TryWrite(data, size);
        if (count > 0) {
            writtenBytes_ += static_cast<std::uint64_t>(count);
            return count;
        }
        if (wanted_ == kNothing || !Wait(wanted_, deadline, false))
            return -1;
    }
}

std::string Connection::PeerAddress() const {
    sockaddr_storage address{};
    socklen_t size = sizeof(address);
    std::array<char, NI_MAXHOST> text{};
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::getpeername(socket_, generic, &size) != 0 ||
        ::getnameinfo(generic, size, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST) != 0)
        return "";
    return text.data();
}

bool Connection::Handshake() {
    const auto deadline = Clock::now() + kRequestLimit;
    while (tls_) {
        const int result = SSL_accept(tls_.get());
        if (result == 1) {
            isReady_ = true;
            return true;
        }
        const short events = EventsAfter(result);
        if (events == kNothing || !Wait(events, deadline, true))
            break;
    }
    // Whatever comes from the client is not for this server.
    tls_.reset();
    return false;
}

bool Connection::Fill(Clock::time_point deadline) {
    for (;;) {
        const ssize_t count = TryRead(buffer_.data(), buffer_.size());
        if (count > 0) {
            begin_ = 0;
            end_ = static_cast<std::size_t>(count);
            return true;
        }
        if (wanted_ == kNothing || !Wait(wanted_, deadline, false))
            return false;
    }
}

/// Behind the empty line that ends the headers, the request may be as long as a body.
void Connection::CountHeader(const char* data, std::size_t size) {
    for (std::size_t i = 0; i < size && headerEnd_ < kEndOfHeader.size(); ++i) {
        headerLine_ = data[i] == '\n' ? 0 : headerLine_ + 1;
        hasTooLongHeaders_ = hasTooLongHeaders_ || headerLine_ > kMaxHeaderLine;
        headerEnd_ = data[i] == kEndOfHeader[headerEnd_] ? headerEnd_ + 1 : data[i] == '\r' ? 1 : 0;
        if (headerEnd_ == kEndOfHeader.size())
            allowance_ += kMaxBodyBytes;
    }
}

/// Lets the client read what is on its way: closing with unread bytes of a request would take it back.
void Connection::Close() {
    if (tls_ && isReady_)
        SSL_shutdown(tls_.get());
    tls_.reset();
    ::shutdown(socket_, SHUT_WR);
    const auto deadline = Clock::now() + kCloseLimit;
    while (Clock::now() < deadline && !stop_.IsRaised() && Fill(deadline)) {
    }
}

ssize_t Connection::TryRead(char* data, std::size_t size) {
    if (tls_) {
        const int count = SSL_read(tls_.get(), data, static_cast<int>(std::min<std::size_t>(size, INT_MAX)));
        wanted_ = count > 0 ? kReadable : EventsAfter(count);
        return count;
    }
    const ssize_t count = ::recv(socket_, data, size, 0);
    wanted_ = count < 0 && (errno == EAGAIN || errno == EINTR) ? kReadable : kNothing;
    return count;
}

ssize_t Connection::TryWrite(const char* data, std::size_t size) {
    if (tls_) {
        const int count = SSL_write(tls_.get(), data, static_cast<int>(std::min<std::size_t>(size, INT_MAX)));
        wanted_ = count > 0 ? kWritable : EventsAfter(count);
        return count;
    }
    const ssize_t count = ::send(socket_, data, size, MSG_NOSIGNAL);
    wanted_ = count < 0 && (errno == EAGAIN || errno == EINTR) ? kWritable : kNothing;
    return count;
}

short Connection::EventsAfter(int result) const {
    switch (SSL_get_error(tls_.get(), result)) {
    case SSL_ERROR_WANT_READ:
        return kReadable;
    case SSL_ERROR_WANT_WRITE:
        return kWritable;
    default:
        return kNothing;
    }
}

bool Connection::Wait(short events, Clock::time_point deadline, bool untilStop) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(LimitedByStop(deadline) - Clock::now()).count();
        // Once the signal is raised, waiting for it would not be waiting.
        const bool watchesStop = untilStop || !stop_.IsRaised();
        std::array<pollfd, 2> handles{pollfd{socket_, events, 0}, pollfd{stop_.Handle(), kReadable, 0}};
        const int count = left <= 0 ? 0 : ::poll(handles.data(), watchesStop ? 2 : 1, static_cast<int>(left));
        if (count == 0 || (count < 0 && errno != EINTR))
            return false;
        if (count > 0 && handles[0].revents != 0)
            return true;
        if (untilStop && stop_.IsRaised())
            return false;
    }
}

Connection::Clock::time_point Connection::LimitedByStop(Clock::time_point deadline) {
    if (!stop_.IsRaised())
        return deadline;
    if (!stopDeadline_)
        stopDeadline_ = Clock::now() + kStopLimit;
    return std::min(deadline, *stopDeadline_);
}

} // namespace demo
