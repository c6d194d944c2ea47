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

/// How long answers may still take when the server stops.
constexpr std::chrono::seconds kStopLimit(3);
/// How long a client may take to notice that the connection ends.
constexpr std::chrono::seconds kCloseLimit(2);
constexpr std::chrono::milliseconds kCrowdedCloseLimit(200);
/// What the system may hold of an answer that the client does not take.
constexpr int kSendBufferBytes = 256 * 1024;

// The events of poll() in the type that it takes.
constexpr short kNothing = 0;
constexpr short kReadable = POLLIN;
constexpr short kWritable = POLLOUT;

constexpr std::string_view kEndOfHeader = "\r\n\r\n";

} // namespace

Connection::Connection(int socket, Clock::time_point made, SSL_CTX* context, const ListenerLimits& limits,
                       const StopSignal& stop, const CrowdSignal& crowd)
    : socket_(socket),
      limits_(limits),
      tls_(context ? SSL_new(context) : nullptr, &SSL_free),
      stop_(stop),
      crowd_(crowd),
      isReady_(context == nullptr),
      crowdedDeadline_(std::max(made + limits.crowdedHead, Clock::now() + limits.crowdedMoment)) {
    ::fcntl(socket_, F_SETFL, ::fcntl(socket_, F_GETFL) | O_NONBLOCK);
    ::setsockopt(socket_, SOL_SOCKET, SO_SNDBUF, &kSendBufferBytes, sizeof(kSendBufferBytes));
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
    if (!isReady_ && !Handshake()) {
        return false;
    }
    allowance_ = kMaxHeaderBytes;
    headerEnd_ = 0;
    headerLine_ = 0;
    headerLines_ = 0;
    hasTooLongHeaders_ = false;
    writtenBefore_ = writtenBytes_;
    writeWait_ = {};
    // One that has had an answer makes room at once.
    const bool isFirst = writtenBytes_ == 0;
    const Patience idle{Clock::now() + limits_.idle, isFirst ? crowdedDeadline_ : Clock::time_point(), true};
    if (begin_ == end_ && (stop_.IsRaised() || !Fill(idle))) {
        return false;
    }
    const auto now = Clock::now();
    requestDeadline_ = now + limits_.request;
    crowdedDeadline_ = isFirst ? std::max(crowdedDeadline_, now + limits_.crowdedMoment) : now + limits_.crowdedHead;
    return true;
}

ssize_t Connection::Read(char* data, std::size_t size) {
    if (begin_ == end_ && !Fill(ForRequest())) {
        return wanted_ == kNothing ? 0 : -1;
    }
    const std::size_t count = std::min({size, end_ - begin_, allowance_});
    if (count == 0) {
        hasTooLongHeaders_ = !HasWholeHeaders();
        return -1;
    }
    std::memcpy(data, buffer_.data() + begin_, count);
    begin_ += count;
    allowance_ -= count;
    CountHeader(data, count);
    return static_cast<ssize_t>(count);
}

ssize_t Connection::Write(const char* data, std::size_t size) {
    for (;;) {
        if (LimitedByStop(AnswerDeadline()) < Clock::now()) {
            return -1;
        }
        const ssize_t count = TryWrite(data, size);
        if (count > 0) {
            writtenBytes_ += static_cast<std::uint64_t>(count);
            return count;
        }
        if (wanted_ == kNothing || !WaitToWrite()) {
            return -1;
        }
    }
}

std::string Connection::PeerAddress() const {
    sockaddr_storage address{};
    socklen_t size = sizeof(address);
    std::array<char, NI_MAXHOST> text{};
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::getpeername(socket_, generic, &size) != 0 ||
        ::getnameinfo(generic, size, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST) != 0) {
        return "";
    }
    return text.data();
}

bool Connection::Handshake() {
    const Patience patience{Clock::now() + limits_.request, crowdedDeadline_, true};
    while (tls_) {
        const int result = SSL_accept(tls_.get());
        if (result == 1) {
            isReady_ = true;
            return true;
        }
        const short events = EventsAfter(result);
        if (events == kNothing || !Wait(events, patience)) {
            break;
        }
    }
    // Whatever comes from the client is not for this server.
    tls_.reset();
    return false;
}

bool Connection::Fill(const Patience& patience) {
    for (;;) {
        const ssize_t count = TryRead(buffer_.data(), buffer_.size());
        if (count > 0) {
            begin_ = 0;
            end_ = static_cast<std::size_t>(count);
            return true;
        }
        if (wanted_ == kNothing || !Wait(wanted_, patience)) {
            return false;
        }
    }
}

bool Connection::HasWholeHeaders() const { return headerEnd_ == kEndOfHeader.size(); }

Connection::Patience Connection::ForRequest() const {
    return {requestDeadline_, HasWholeHeaders() ? Clock::time_point::max() : crowdedDeadline_};
}

/// Only the time counts that was spent waiting for the client, not that in which the answer came about.
Connection::Clock::time_point Connection::AnswerDeadline() const {
    const auto taken = static_cast<double>(writtenBytes_ - writtenBefore_);
    const std::chrono::duration<double> earned(taken / static_cast<double>(limits_.slowestReader));
    return Clock::now() + limits_.answerWait + std::chrono::duration_cast<Clock::duration>(earned) - writeWait_;
}

bool Connection::WaitToWrite() {
    const auto begin = Clock::now();
    const bool isWritable = Wait(wanted_, {AnswerDeadline()});
    writeWait_ += Clock::now() - begin;
    return isWritable;
}

/// Behind the empty line that ends the headers, the request may be as long as a body.
void Connection::CountHeader(const char* data, std::size_t size) {
    for (std::size_t i = 0; i < size && !HasWholeHeaders(); ++i) {
        headerLine_ = data[i] == '\n' ? 0 : headerLine_ + 1;
        headerLines_ += data[i] == '\n' ? 1 : 0;
        hasTooLongHeaders_ = hasTooLongHeaders_ || headerLine_ > kMaxHeaderLine;
        headerEnd_ = data[i] == kEndOfHeader[headerEnd_] ? headerEnd_ + 1 : data[i] == '\r' ? 1 : 0;
        if (HasWholeHeaders()) {
            allowance_ += kMaxBodyBytes;
        } else if (headerLines_ > kMaxHeaderLines) {
            allowance_ = 0;
        }
    }
}

/// Lets the client read what is on its way: closing with unread bytes of a request would take it back.
void Connection::Close() {
    if (tls_ && isReady_) {
        SSL_shutdown(tls_.get());
    }
    tls_.reset();
    ::shutdown(socket_, SHUT_WR);
    const auto now = Clock::now();
    const auto crowdedLimit = writtenBytes_ == 0 ? Clock::duration() : kCrowdedCloseLimit;
    const Patience patience{now + kCloseLimit, now + crowdedLimit, true};
    while (Clock::now() < DeadlineNow(patience) && !stop_.IsRaised() && Fill(patience)) {
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

bool Connection::Wait(short events, const Patience& patience) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(DeadlineNow(patience) - Clock::now()).count();
        if (left <= 0) {
            return false;
        }
        // Once a signal is raised, waiting for it would not be waiting. poll() skips negative handles.
        const bool watchesStop = patience.untilStop || !stop_.IsRaised();
        const bool watchesCrowd = patience.crowdedDeadline < patience.deadline && !crowd_.IsRaised();
        std::array<pollfd, 3> handles{pollfd{socket_, events, 0},
                                      pollfd{watchesStop ? stop_.Handle() : -1, kReadable, 0},
                                      pollfd{watchesCrowd ? crowd_.Handle() : -1, kReadable, 0}};
        const int count = ::poll(handles.data(), handles.size(), static_cast<int>(std::min<long>(left, INT_MAX)));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        if (count > 0 && handles[0].revents != 0) {
            return true;
        }
        if (patience.untilStop && stop_.IsRaised()) {
            return false;
        }
    }
}

Connection::Clock::time_point Connection::DeadlineNow(const Patience& patience) {
    return LimitedByStop(crowd_.IsRaised() ? std::min(patience.deadline, patience.crowdedDeadline) : patience.deadline);
}

Connection::Clock::time_point Connection::LimitedByStop(Clock::time_point deadline) {
    if (!stop_.IsRaised()) {
        return deadline;
    }
    if (!stopDeadline_) {
        stopDeadline_ = Clock::now() + kStopLimit;
    }
    return std::min(deadline, *stopDeadline_);
}

} // namespace demo
