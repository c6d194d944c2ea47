#include "replay/ReplayListener.h"

#include "replay/RecordedBytes.h"
#include "replay/RequestMeaning.h"
#include "schema/Names.h"
#include "server/Connection.h"
#include "server/ConnectionThreads.h"
#include "server/HttpListener.h"
#include "server/ListenerLimits.h"
#include "server/StopSignal.h"
#include "wire/CimError.h"
#include "wire/CimRequest.h"
#include "wire/PercentEncoding.h"

#include <httplib.h>

#include <sys/socket.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <exception>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>

namespace demo {

namespace {

class TaskQueue : public httplib::TaskQueue {
  public:
    explicit TaskQueue(ConnectionThreads& threads) : threads_(threads) {}

    void enqueue(std::function<void()> connection) override { threads_.Enqueue(std::move(connection)); }
    void shutdown() override { threads_.Shutdown(); }

  private:
    ConnectionThreads& threads_;
};

/// Takes connections as httplib does, and leaves what is said over them to somebody else.
class Acceptor : public httplib::Server {
  public:
    Acceptor(std::function<void(socket_t)> serve, ConnectionThreads& threads) : serve_(std::move(serve)) {
        new_task_queue = [&threads] { return new TaskQueue(threads); };
    }

  private:
    bool process_and_close_socket(socket_t socket) override {
        serve_(socket);
        return true;
    }

    const std::function<void(socket_t)> serve_;
};

/// Reads exactly so many bytes. False when they do not come.
bool Read(Connection& connection, std::string& text, std::size_t count) {
    const std::size_t begin = text.size();
    text.resize(begin + count);
    for (std::size_t at = begin; at < text.size();) {
        const ssize_t read = connection.Read(&text[at], text.size() - at);
        if (read <= 0) {
            return false;
        }
        at += static_cast<std::size_t>(read);
    }
    return true;
}

bool Write(Connection& connection, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = connection.Write(bytes.data(), bytes.size());
        if (written <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// The value of a header field, empty without it.
std::string_view FieldOf(std::string_view head, std::string_view name) {
    while (!head.empty()) {
        const auto end = head.find("\r\n");
        const auto line = head.substr(0, end);
        const auto colon = line.find(':');
        if (colon != std::string_view::npos && SameName(line.substr(0, colon), name)) {
            return line.substr(std::min(line.find_first_not_of(" \t", colon + 1), line.size()));
        }
        head.remove_prefix(end == std::string_view::npos ? head.size() : end + 2);
    }
    return {};
}

struct Request {
    std::string body;
    bool isLast; ///< the client wants the connection to end
};

/// The next request; nothing when it does not come as a whole, or says no length.
std::optional<Request> ReadNext(Connection& connection) {
    std::string head;
    while (head.size() < 4 || head.compare(head.size() - 4, 4, "\r\n\r\n") != 0) {
        if (!Read(connection, head, 1)) {
            return std::nullopt;
        }
    }
    const auto length = FieldOf(head, "Content-Length");
    std::size_t size = 0;
    const auto parsed = std::from_chars(length.data(), length.data() + length.size(), size);
    if (length.empty() || parsed.ec != std::errc() || size > Connection::kMaxBodyBytes) {
        return std::nullopt;
    }
    if (SameName(FieldOf(head, "Expect"), "100-continue") && !Write(connection, "HTTP/1.1 100 Continue\r\n\r\n")) {
        return std::nullopt;
    }
    Request request{"", SameName(FieldOf(head, "Connection"), "close")};
    return Read(connection, request.body, size) ? std::optional(std::move(request)) : std::nullopt;
}

std::string Refusal(const std::string& status, const std::string& cimError, const std::string& detail) {
    return "HTTP/1.1 " + status + "\r\nCIMError: " + cimError + "\r\nPGErrorDetail: " + PercentEncode(detail) +
           "\r\nContent-Length: 0\r\n\r\n";
}

} // namespace

class ReplayListener::Implementation {
  public:
    Implementation(Recording& recording, OnUnknown onUnknown, const std::string& address, int port,
                   const TlsContext* tls)
        : recording_(recording),
          onUnknown_(std::move(onUnknown)),
          tls_(tls),
          url_((tls ? "https://" : "http://") + address + ':' + std::to_string(port)),
          threads_(limits_.connections, limits_.waitingConnections),
          acceptor_([this](int socket) { Serve(socket); }, threads_) {
        Bind(address, port);
        thread_ = std::thread([this] { acceptor_.listen_after_bind(); });
    }

    ~Implementation() {
        stop_.Raise();
        ::shutdown(socket_, SHUT_RDWR);
        thread_.join();
    }

    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;

    const std::string& Url() const { return url_; }

  private:
    void Bind(const std::string& address, int port);
    void Serve(int socket);
    void Converse(Connection& connection);
    bool Answer(Connection& connection, const std::string& body);
    std::string ReportUnknown(const CimRequest& request);

    Recording& recording_;
    const OnUnknown onUnknown_;
    const TlsContext* const tls_;
    const std::string url_;
    const ListenerLimits limits_;
    StopSignal stop_;
    std::mutex unknown_;
    ConnectionThreads threads_;
    Acceptor acceptor_;
    int socket_ = -1;
    std::thread thread_;
};

void ReplayListener::Implementation::Bind(const std::string& address, int port) {
    acceptor_.set_socket_options([this](int created) {
        const int yes = 1;
        ::setsockopt(created, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
        socket_ = created;
    });
    errno = 0;
    if (!acceptor_.bind_to_port(address, port)) {
        const int error = errno;
        throw ListenError("cannot listen on " + address + " port " + std::to_string(port) + ": " +
                          (error == 0 ? "the address is not one of this machine's" : std::strerror(error)));
    }
    acceptor_.set_socket_options(nullptr);
}

void ReplayListener::Implementation::Serve(int socket) {
    Connection connection(socket, ConnectionThreads::EnqueueTime(), tls_ ? tls_->Get() : nullptr, limits_, stop_,
                          threads_.Crowd());
    try {
        Converse(connection);
    } catch (const std::exception&) { // out of memory, mostly: the other clients are served on
        Write(connection, "HTTP/1.1 500 Internal Server Error\r\nConnection: close\r\nContent-Length: 0\r\n\r\n");
    }
}

/// Until the connection ends.
void ReplayListener::Implementation::Converse(Connection& connection) {
    while (connection.WaitForRequest()) {
        const auto request = ReadNext(connection);
        if (!request || !Answer(connection, request->body) || request->isLast) {
            return;
        }
    }
}

/// Whether the connection goes on.
bool ReplayListener::Implementation::Answer(Connection& connection, const std::string& body) {
    try {
        const CimRequest request = ReadRequest(body);
        const RecordedAnswer* const answer = recording_.Next(MeaningOf(request));
        if (answer == nullptr) {
            return Write(connection, ReportUnknown(request));
        }
        return Write(connection, BytesFor(*answer, request.messageId)) && !EndsConnection(*answer);
    } catch (const HttpError& error) {
        return Write(connection, Refusal("400 Bad Request", error.CimErrorValue(), error.what()));
    }
}

std::string ReplayListener::Implementation::ReportUnknown(const CimRequest& request) {
    const std::string text = ShortTextOf(request);
    const std::lock_guard<std::mutex> lock(unknown_);
    onUnknown_(text);
    return Refusal("501 Not Implemented", "unsupported-operation", "not recorded: " + text);
}

ReplayListener::ReplayListener(Recording& recording, OnUnknown onUnknown, const std::string& address, int port,
                               const TlsContext* tls)
    : implementation_(std::make_unique<Implementation>(recording, std::move(onUnknown), address, port, tls)) {}

ReplayListener::~ReplayListener() = default;

std::string ReplayListener::Url() const { return implementation_->Url(); }

} // namespace demo
