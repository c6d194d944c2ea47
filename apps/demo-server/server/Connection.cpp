#include "server/Connection.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>

namespace demo {

namespace {

/// How long a client may take to notice that the connection ends.
constexpr std::chrono::seconds kCloseLimit(2);
constexpr std::chrono::milliseconds kCrowdedCloseLimit(200);
/// What the system may hold of an answer that the client does not take.
constexpr int kSendBufferBytes = 256 * 1024;

// The events of poll() in the type that it takes.
constexpr short kNothing = 0;
constexpr short kReadable = POLLIN;
constexpr short kWritable = POLLOUT;

/// How much is read at once: as much as a TLS record carries.
constexpr std::size_t kPortion = std::size_t{16} * 1024;

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
    const int yes = 1;
    ::setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof(yes));
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
    hasHeaders_ = false;
    writtenBefore_ = writtenBytes_;
    writeWait_ = {};
    // One that has had an answer makes room at once.
    const bool isFirst = writtenBytes_ == 0;
    const TimeLimit idle{Clock::now() + limits_.idle, isFirst ? crowdedDeadline_ : Clock::time_point(), true};
    if (arrived_.size() == 0 && (stop_.IsRaised() || !Fill(idle))) {
        return false;
    }
    const auto now = Clock::now();
    requestDeadline_ = now + limits_.request;
    crowdedDeadline_ = isFirst ? std::max(crowdedDeadline_, now + limits_.crowdedMoment) : now + limits_.crowdedHead;
    return true;
}

void Connection::Receive() {
    if (arrived_.size() >= kMaxArrived || !Fill(ForRequest())) {
        throw ConnectionLost();
    }
}

void Connection::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        bytes.remove_prefix(WriteSome(bytes));
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
    const TimeLimit limit{Clock::now() + limits_.request, crowdedDeadline_, true};
    while (tls_) {
        const int result = SSL_accept(tls_.get());
        if (result == 1) {
            isReady_ = true;
            return true;
        }
        const short events = EventsAfter(result);
        if (events == kNothing || !Wait(events, limit)) {
            break;
        }
    }
    // Whatever comes from the client is not for this server.
    tls_.reset();
    return false;
}

bool Connection::Fill(const TimeLimit& limit) {
    for (;;) {
        const auto space = arrived_.prepare(kPortion);
        const ssize_t count = TryRead(static_cast<char*>(space.data()), space.size());
        if (count > 0) {
            arrived_.commit(static_cast<std::size_t>(count));
            return true;
        }
        if (wanted_ == kNothing || !Wait(wanted_, limit)) {
            return false;
        }
    }
}

Connection::TimeLimit Connection::ForRequest() const {
    return {requestDeadline_, hasHeaders_ ? Clock::time_point::max() : crowdedDeadline_};
}

/// Only the time counts that was spent waiting for the client, not that in which the answer came about.
Connection::Clock::time_point Connection::AnswerDeadline() const {
    const auto taken = static_cast<double>(writtenBytes_ - writtenBefore_);
    const std::chrono::duration<double> earned(taken / static_cast<double>(limits_.slowestReader));
    return Clock::now() + limits_.answerWait + std::chrono::duration_cast<Clock::duration>(earned) - writeWait_;
}

std::size_t Connection::WriteSome(std::string_view bytes) {
    for (;;) {
        if (LimitedByStop(AnswerDeadline()) < Clock::now()) {
            throw ConnectionLost();
        }
        const ssize_t count = TryWrite(bytes.data(), bytes.size());
        if (count > 0) {
            writtenBytes_ += static_cast<std::uint64_t>(count);
            return static_cast<std::size_t>(count);
        }
        WaitToWrite();
    }
}

void Connection::WaitToWrite() {
    const auto begin = Clock::now();
    if (wanted_ == kNothing || !Wait(wanted_, {AnswerDeadline()})) {
        throw ConnectionLost();
    }
    writeWait_ += Clock::now() - begin;
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
    const TimeLimit limit{now + kCloseLimit, now + crowdedLimit, true};
    std::array<char, kPortion> unread; // NOLINT(cppcoreguidelines-pro-type-member-init): nobody reads it
    while (Clock::now() < DeadlineNow(limit) && !stop_.IsRaised() && Discard(unread.data(), unread.size(), limit)) {
    }
}

/// False when there is nothing more to come, or not in time.
bool Connection::Discard(char* data, std::size_t size, const TimeLimit& limit) {
    return TryRead(data, size) > 0 || (wanted_ != kNothing && Wait(wanted_, limit));
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

bool Connection::Wait(short events, const TimeLimit& limit) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(DeadlineNow(limit) - Clock::now()).count();
        if (left <= 0) {
            return false;
        }
        // Once a signal is raised, waiting for it would not be waiting. poll() skips negative handles.
        const bool watchesStop = limit.untilStop || !stop_.IsRaised();
        const bool watchesCrowd = limit.crowdedDeadline < limit.deadline && !crowd_.IsRaised();
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
        if (limit.untilStop && stop_.IsRaised()) {
            return false;
        }
    }
}

Connection::Clock::time_point Connection::DeadlineNow(const TimeLimit& limit) {
    return LimitedByStop(crowd_.IsRaised() ? std::min(limit.deadline, limit.crowdedDeadline) : limit.deadline);
}

Connection::Clock::time_point Connection::LimitedByStop(Clock::time_point deadline) {
    if (!stop_.IsRaised()) {
        return deadline;
    }
    if (!stopDeadline_) {
        stopDeadline_ = Clock::now() + limits_.stop;
    }
    return std::min(deadline, *stopDeadline_);
}

} // namespace demo
