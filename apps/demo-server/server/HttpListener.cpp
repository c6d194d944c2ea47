#include "server/HttpListener.h"

#include "server/Answer.h"
#include "server/ChunkedBody.h"
#include "server/Connection.h"
#include "server/ConnectionThreads.h"
#include "server/LoginDelays.h"
#include "server/Places.h"
#include "server/StopSignal.h"
#include "wire/CimError.h"
#include "wire/CimRequest.h"
#include "wire/PercentEncoding.h"

#include <httplib.h>

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <limits>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

namespace demo {

namespace {

constexpr const char* kPath = "/cimom";
constexpr const char* kXmlType = "application/xml; charset=utf-8";

constexpr int kOk = 200;
constexpr int kBadRequest = 400;
constexpr int kUnauthorized = 401;
constexpr int kNotFound = 404;
constexpr int kMethodNotAllowed = 405;
constexpr int kPayloadTooLarge = 413;
constexpr int kUnsupportedMediaType = 415;
constexpr int kTooManyRequests = 429;
constexpr int kHeadersTooLarge = 431;
constexpr int kNotImplemented = 501;
constexpr int kUnavailable = 503;
constexpr int kVersionNotSupported = 505;

class TaskQueue : public httplib::TaskQueue {
  public:
    explicit TaskQueue(ConnectionThreads& threads) : threads_(threads) {}

    void enqueue(std::function<void()> connection) override { threads_.Enqueue(std::move(connection)); }
    void shutdown() override { threads_.Shutdown(); }

  private:
    ConnectionThreads& threads_;
};

/// What httplib reads from and writes to. Small pieces wait for each other, so that a short answer leaves in one
/// packet.
class ConnectionStream : public httplib::Stream {
  public:
    explicit ConnectionStream(Connection& connection) : connection_(connection) {}

    /// Sends what is waiting. False when the client does not take it.
    bool Flush() {
        const bool isSent = Send(waiting_);
        waiting_.clear();
        return isSent;
    }

    bool is_readable() const override { return true; }
    bool is_writable() const override { return true; }
    ssize_t read(char* data, std::size_t size) override { return Flush() ? connection_.Read(data, size) : -1; }
    ssize_t write(const char* data, std::size_t size) override {
        const std::size_t fitting = std::min(size, kWaitingBytes - waiting_.size());
        waiting_.append(data, fitting);
        const bool isTaken = waiting_.size() < kWaitingBytes || (Flush() && Send({data + fitting, size - fitting}));
        return isTaken ? static_cast<ssize_t>(size) : -1;
    }
    // Nobody asks httplib who the client is.
    void get_remote_ip_and_port(std::string& /*ip*/, int& /*port*/) const override {}
    void get_local_ip_and_port(std::string& /*ip*/, int& /*port*/) const override {}
    socket_t socket() const override { return connection_.Socket(); }

  private:
    static constexpr std::size_t kWaitingBytes = std::size_t{32} * 1024;

    bool Send(std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t count = connection_.Write(bytes.data(), bytes.size());
            if (count <= 0) {
                return false;
            }
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
        return true;
    }

    Connection& connection_;
    std::string waiting_;
};

/// A request and its answer, from the first byte to the last.
struct Exchange {
    Connection& connection;
    AccessRecord record;
    /// What the request and the answer hold while they are long.
    Places::Place requestPlace = nullptr;
    Places::Place answerPlace = nullptr;
};

/// The exchanges that are under way. A connection has a thread of its own, by which a handler finds its exchange:
/// httplib hands it nothing of the connection.
class Exchanges {
  public:
    void Begin(Exchange& exchange) {
        const std::lock_guard<std::mutex> lock(mutex_);
        exchanges_[std::this_thread::get_id()] = &exchange;
    }

    void End() {
        const std::lock_guard<std::mutex> lock(mutex_);
        exchanges_.erase(std::this_thread::get_id());
    }

    Exchange& OfThisThread() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        return *exchanges_.at(std::this_thread::get_id());
    }

  private:
    mutable std::mutex mutex_;
    std::map<std::thread::id, Exchange*> exchanges_;
};

/// httplib's server over connections of our own: it has no limit for headers and for the time that a request takes, and
/// does not stop before its idle connections end by themselves.
class Server : public httplib::Server {
  public:
    Server(SSL_CTX* context, const ListenerLimits& limits, const StopSignal& stop, AccessLog* log)
        : context_(context),
          limits_(limits),
          stop_(stop),
          log_(log),
          threads_(limits.connections, limits.waitingConnections) {
        new_task_queue = [this] { return new TaskQueue(threads_); };
    }

    /// That of the calling handler.
    Exchange& CurrentExchange() const { return exchanges_.OfThisThread(); }

  private:
    bool process_and_close_socket(socket_t socket) override {
        Connection connection(socket, ConnectionThreads::EnqueueTime(), context_, limits_, stop_, threads_.Crowd());
        const std::string client = connection.PeerAddress();
        bool isClosing = false;
        while (!isClosing && connection.WaitForRequest()) {
            Exchange exchange{connection, {}};
            exchange.record.begin = std::chrono::system_clock::now();
            exchange.record.client = client;
            if (!Process(exchange, isClosing)) {
                break;
            }
        }
        return true;
    }

    bool Process(Exchange& exchange, bool& isClosing) {
        const auto begin = std::chrono::steady_clock::now();
        const auto writtenBefore = exchange.connection.WrittenBytes();
        ConnectionStream stream(exchange.connection);
        exchanges_.Begin(exchange);
        // httplib would put together an answer of as many parts as the field Range names.
        const bool isProcessed = process_request(stream, stop_.IsRaised(), isClosing,
                                                 [](httplib::Request& request) { request.ranges.clear(); });
        exchanges_.End();
        const bool isSent = stream.Flush(); // also where the connection ends behind the answer
        exchange.record.bytes = exchange.connection.WrittenBytes() - writtenBefore;
        exchange.record.duration =
            std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);
        if (log_) {
            log_->Write(exchange.record);
        }
        return isProcessed && isSent;
    }

    SSL_CTX* context_;
    const ListenerLimits& limits_;
    const StopSignal& stop_;
    AccessLog* log_;
    Exchanges exchanges_;
    ConnectionThreads threads_;
};

/// Makes the connection end behind this answer, for when the rest of the request is not worth reading: a body that
/// fails is how httplib closes one.
void CloseAfter(httplib::Response& response) {
    response.body.clear();
    response.set_header("Connection", "close");
    response.set_content_provider("text/plain", [](std::size_t, httplib::DataSink&) { return false; });
}

/// For what can be had a little later.
void PutOff(httplib::Response& response, int status, std::chrono::milliseconds wait) {
    response.status = status;
    response.set_header("Retry-After", std::to_string(std::chrono::ceil<std::chrono::seconds>(wait).count()));
}

void Refuse(httplib::Response& response, const HttpError& error) {
    response.status = error.HttpStatus();
    response.set_header("CIMError", error.CimErrorValue());
    response.set_header("PGErrorDetail", PercentEncode(error.what()));
}

bool ContainsIgnoringCase(const std::string& text, std::string_view word) {
    return std::search(text.begin(), text.end(), word.begin(), word.end(), [](char a, char b) {
               return SameName({&a, 1}, {&b, 1});
           }) != text.end();
}

bool IsXml(const std::string& contentType) {
    return ContainsIgnoringCase(contentType, "application/xml") || ContainsIgnoringCase(contentType, "text/xml");
}

bool TakesChunks(const httplib::Request& request) { return request.version == "HTTP/1.1"; }

bool TakesTrailers(const httplib::Request& request) {
    return TakesChunks(request) && ContainsIgnoringCase(request.get_header_value("TE"), "trailers");
}

/// Whether a request line is right but for its method.
bool IsUnknownMethod(const httplib::Request& request) {
    constexpr std::array kKnown{"GET", "HEAD", "POST", "PUT", "DELETE", "OPTIONS", "PATCH"};
    return request.version.rfind("HTTP/1.", 0) == 0 &&
           std::find(kKnown.begin(), kKnown.end(), request.method) == kKnown.end();
}

/// The extension headers of DSP0200 repeat what stands in the body, for firewalls and proxies.
void CheckOperationHeader(const httplib::Request& request) {
    const std::string operation = request.get_header_value("CIMOperation");
    if (!SameName(operation, "MethodCall")) {
        throw HttpError(kBadRequest, "unsupported-operation",
                        "the header CIMOperation must be MethodCall, not \"" + operation + '"');
    }
}

/// The header is optional; without it, the version in the body is all that is to be known.
void CheckProtocolVersion(const httplib::Request& request) {
    const std::string version = request.get_header_value("CIMProtocolVersion");
    if (!version.empty() && version.rfind("1.", 0) != 0) {
        throw HttpError(kNotImplemented, "unsupported-protocol-version",
                        "CIMProtocolVersion " + version + " is not supported");
    }
}

void CheckRepeated(const httplib::Request& request, const char* header, const std::string& inBody) {
    const std::string inHeader = PercentDecode(request.get_header_value(header));
    if (!request.has_header(header)) {
        throw HttpError(kBadRequest, "header-mismatch", std::string("the header ") + header + " is missing");
    }
    if (!SameName(inHeader, inBody)) {
        throw HttpError(kBadRequest, "header-mismatch",
                        std::string("the header ") + header + " is \"" + inHeader + "\", the request says \"" + inBody +
                            '"');
    }
}

/// For the log.
std::string StatusOf(const std::optional<CimError>& error) { return error ? error->Code() : "0"; }

CimRequest ReadOperation(const httplib::Request& request, const std::string& body) {
    CheckOperationHeader(request);
    CheckProtocolVersion(request);
    CimRequest operation = ReadRequest(body);
    CheckRepeated(request, "CIMMethod", operation.method);
    // That of an extrinsic method is an object path, which can be written in many ways.
    if (operation.kind == CimRequest::Kind::kIntrinsic) {
        CheckRepeated(request, "CIMObject", operation.nameSpace);
    }
    return operation;
}

} // namespace

class HttpListener::Implementation {
  public:
    Implementation(const CimService& service, const Users& users, AccessLog* log, const std::string& address, int port,
                   const TlsContext* tls, const ListenerLimits& limits)
        : service_(service),
          users_(users),
          limits_(limits),
          largeRequests_(limits.largeRequests, limits.patientRequests),
          longAnswers_(limits.longAnswers, limits.patientRequests),
          delayedLogins_(limits.delayedLogins, 0),
          url_((tls ? "https://" : "http://") + address + ':' + std::to_string(port)),
          server_(tls ? tls->Get() : nullptr, limits_, stop_, log) {
        Configure();
        Bind(address, port);
        thread_ = std::thread([this] { server_.listen_after_bind(); });
    }

    ~Implementation() {
        stop_.Raise();
        largeRequests_.Close();
        longAnswers_.Close();
        // Ends httplib's loop as an error of the socket. Told to stop, it would leave out the bodies of the answers
        // that have got no further than their headers.
        ::shutdown(socket_, SHUT_RDWR);
        thread_.join();
    }

    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;

    const std::string& Url() const { return url_; }

  private:
    void Configure();
    void Bind(const std::string& address, int port);

    void Serve(const httplib::Request& request, httplib::Response& response, const httplib::ContentReader& readContent);
    std::optional<std::string> ReadBody(httplib::Response& response, const httplib::ContentReader& readContent);
    bool LetIn(const httplib::Request& request, httplib::Response& response);
    bool AwaitTurn(const std::string& client);
    std::optional<std::string> Authenticate(const std::string& client, const std::string& authorization);
    void Respond(const httplib::Request& request, httplib::Response& response, CimRequest operation);
    void RespondOnce(Exchange& exchange, httplib::Response& response, const CimRequest& operation);
    bool MayHold(Exchange& exchange, std::size_t answerBytes, std::chrono::milliseconds patience);
    void Send(httplib::Response& response, WholeAnswer answer) const;
    void StreamTo(httplib::Response& response, CimRequest operation, bool withTrailers) const;

    const CimService& service_;
    const Users& users_;
    const ListenerLimits limits_;
    Places largeRequests_;
    Places longAnswers_;
    Places delayedLogins_;
    LoginDelays loginDelays_;
    std::string url_;
    StopSignal stop_;
    Server server_;
    int socket_ = -1;
    std::thread thread_;
};

void HttpListener::Implementation::Configure() {
    server_.set_payload_max_length(Connection::kMaxBodyBytes);
    server_.set_tcp_nodelay(true);

    server_.set_pre_routing_handler([](const httplib::Request& request, httplib::Response& response) {
        if (request.path == kPath && request.method == "POST") {
            return httplib::Server::HandlerResponse::Unhandled;
        }
        response.status = request.path == kPath ? kMethodNotAllowed : kNotFound;
        if (response.status == kMethodNotAllowed) {
            response.set_header("Allow", "POST");
        }
        CloseAfter(response);
        return httplib::Server::HandlerResponse::Handled;
    });
    server_.Post(kPath, [this](const httplib::Request& request, httplib::Response& response,
                               const httplib::ContentReader& readContent) { Serve(request, response, readContent); });
    // What httplib refuses by itself comes here with 400 and without a CIMError: among others, headers that it could
    // not read to the end, and methods that it does not know, such as the M-POST of DSP0200.
    server_.set_error_handler([this](const httplib::Request& request, httplib::Response& response) {
        if (response.status != kBadRequest || response.has_header("CIMError")) {
            return;
        }
        if (server_.CurrentExchange().connection.HasTooLongHeaders()) {
            response.status = kHeadersTooLarge;
        } else if (IsUnknownMethod(request)) {
            response.status = kNotImplemented;
        }
        CloseAfter(response);
    });
    server_.set_post_routing_handler([this](const httplib::Request& /*request*/, httplib::Response& response) {
        server_.CurrentExchange().record.httpStatus = response.status;
    });
}

void HttpListener::Implementation::Bind(const std::string& address, int port) {
    // Not httplib's own options: they would let a second server share the port unnoticed.
    server_.set_socket_options([this](int created) {
        const int yes = 1;
        ::setsockopt(created, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
        socket_ = created;
    });
    errno = 0;
    if (!server_.bind_to_port(address, port)) {
        const int error = errno;
        throw ListenError("cannot listen on " + address + " port " + std::to_string(port) + ": " +
                          (error == 0 ? "the address is not one of this machine's" : std::strerror(error)));
    }
    // httplib's queue of five is too short for clients that come all at once.
    ::listen(socket_, SOMAXCONN);
    server_.set_socket_options(nullptr);
}

void HttpListener::Implementation::Serve(const httplib::Request& request, httplib::Response& response,
                                         const httplib::ContentReader& readContent) {
    if (!IsXml(request.get_header_value("Content-Type"))) {
        response.status = kUnsupportedMediaType;
        CloseAfter(response);
        return;
    }
    auto body = ReadBody(response, readContent);
    if (!body || !LetIn(request, response)) {
        return;
    }
    try {
        CimRequest operation = ReadOperation(request, *body);
        body.reset();
        AccessRecord& record = server_.CurrentExchange().record;
        record.operation = operation.method;
        record.object = operation.ObjectName();
        response.status = kOk;
        response.set_header("CIMOperation", "MethodResponse");
        Respond(request, response, std::move(operation));
    } catch (const HttpError& error) {
        Refuse(response, error);
    }
}

/// Nothing when the request is too long, now or ever; the response then says so.
std::optional<std::string> HttpListener::Implementation::ReadBody(httplib::Response& response,
                                                                  const httplib::ContentReader& readContent) {
    Places::Place& place = server_.CurrentExchange().requestPlace;
    std::string body;
    bool hasRoom = true;
    const bool isComplete = readContent([&](const char* data, std::size_t length) {
        const std::size_t size = body.size() + length;
        if (size > ListenerLimits::kSmallRequest && !place) {
            place = largeRequests_.Take(limits_.patience);
            hasRoom = place != nullptr;
        }
        if (size > Connection::kMaxBodyBytes || !hasRoom) {
            return false;
        }
        body.append(data, length);
        return true;
    });
    if (isComplete) {
        return body;
    }
    if (hasRoom) {
        response.status = kPayloadTooLarge;
    } else {
        PutOff(response, kUnavailable, limits_.patience);
    }
    CloseAfter(response);
    return std::nullopt;
}

/// Whether the request may be carried out; otherwise the response says why not.
bool HttpListener::Implementation::LetIn(const httplib::Request& request, httplib::Response& response) {
    if (users_.IsEmpty()) {
        return true;
    }
    AccessRecord& record = server_.CurrentExchange().record;
    const std::string authorization = request.get_header_value("Authorization");
    if (!authorization.empty() && !AwaitTurn(record.client)) {
        PutOff(response, kTooManyRequests, LoginDelays::kLongestDelay);
        return false;
    }
    const auto user = Authenticate(record.client, authorization);
    record.user = user.value_or("");
    if (!user) {
        response.status = kUnauthorized;
        response.set_header("WWW-Authenticate", "Basic realm=\"demo-server\"");
    }
    return user.has_value();
}

/// False when that would take too long, or too many wait already.
bool HttpListener::Implementation::AwaitTurn(const std::string& client) {
    const auto now = LoginDelays::Clock::now();
    const auto turn = loginDelays_.TakeTurn(client, now);
    if (!turn || *turn == now) {
        return turn.has_value();
    }
    const auto place = delayedLogins_.TryTake();
    return place && !stop_.WaitUntil(*turn);
}

/// The name of the user. A request without a name and password, as clients send it to be asked for them, is no guess.
std::optional<std::string> HttpListener::Implementation::Authenticate(const std::string& client,
                                                                      const std::string& authorization) {
    auto user = users_.Authenticate(authorization);
    if (user) {
        loginDelays_.Succeeded(client);
    } else if (!authorization.empty()) {
        loginDelays_.Failed(client, LoginDelays::Clock::now());
    }
    return user;
}

void HttpListener::Implementation::Respond(const httplib::Request& request, httplib::Response& response,
                                           CimRequest operation) {
    if (TakesTrailers(request)) {
        StreamTo(response, std::move(operation), true);
        return;
    }
    Exchange& exchange = server_.CurrentExchange();
    if (service_.IsOnce(operation)) {
        RespondOnce(exchange, response, operation);
        return;
    }
    const auto patience = TakesChunks(request) ? std::chrono::milliseconds(0) : limits_.patience;
    auto answer = Answer(service_, operation, [&](std::size_t size) { return MayHold(exchange, size, patience); });
    if (answer) {
        Send(response, std::move(*answer));
    } else if (TakesChunks(request)) {
        StreamTo(response, std::move(operation), false);
    } else if (exchange.answerPlace) {
        response.status = kVersionNotSupported; // HTTP/1.0 cannot tell a whole answer of unknown length from a part
    } else {
        PutOff(response, kUnavailable, limits_.patience);
    }
}

/// Answers with the whole of what cannot be begun again: it has its place before it begins, and limits its length
/// itself.
void HttpListener::Implementation::RespondOnce(Exchange& exchange, httplib::Response& response,
                                               const CimRequest& operation) {
    exchange.answerPlace = exchange.answerPlace ? std::move(exchange.answerPlace) : longAnswers_.Take(limits_.patience);
    if (exchange.answerPlace) {
        Send(response, *Answer(service_, operation));
    } else {
        PutOff(response, kUnavailable, limits_.patience);
    }
}

/// Whether there is memory for an answer of that length.
bool HttpListener::Implementation::MayHold(Exchange& exchange, std::size_t answerBytes,
                                           std::chrono::milliseconds patience) {
    if (answerBytes > ListenerLimits::kShortAnswer && !exchange.answerPlace) {
        exchange.answerPlace = longAnswers_.Take(patience);
    }
    return answerBytes <= ListenerLimits::kShortAnswer ||
           (exchange.answerPlace && answerBytes <= ListenerLimits::kLongAnswer);
}

void HttpListener::Implementation::Send(httplib::Response& response, WholeAnswer answer) const {
    server_.CurrentExchange().record.cimStatus = StatusOf(answer.error);
    response.body = std::move(answer.text);
    response.set_header("Content-Type", kXmlType);
}

void HttpListener::Implementation::StreamTo(httplib::Response& response, CimRequest operation,
                                            bool withTrailers) const {
    response.set_header("Transfer-Encoding", "chunked");
    if (withTrailers) {
        response.set_header("Trailer", "CIMStatusCode, CIMStatusCodeDescription");
    }
    // httplib's own chunks cannot have trailers, so that it is told to send a body of unknown length as it is.
    response.set_content_provider(
        kXmlType, [this, operation = std::move(operation), withTrailers](std::size_t, httplib::DataSink& sink) {
            ChunkedBody body([&](std::string_view bytes) { return sink.write(bytes.data(), bytes.size()); });
            try {
                const auto error = StreamAnswer(service_, operation, [&](std::string_view text) { body.Write(text); });
                server_.CurrentExchange().record.cimStatus = StatusOf(error);
                // Without trailers, a body that breaks off is the only way to tell.
                if (error && !withTrailers) {
                    return false;
                }
                body.Finish(error ? ChunkedBody::Trailers{{"CIMStatusCode", error->Code()},
                                                          {"CIMStatusCodeDescription", PercentEncode(error->what())}}
                                  : ChunkedBody::Trailers{});
            } catch (const OutputClosed&) {
                return false;
            }
            sink.done();
            return true;
        });
}

HttpListener::HttpListener(const CimService& service, const Users& users, AccessLog* log, const std::string& address,
                           int port, const TlsContext* tls, const ListenerLimits& limits)
    : implementation_(std::make_unique<Implementation>(service, users, log, address, port, tls, limits)) {}

HttpListener::~HttpListener() = default;

std::string HttpListener::Url() const { return implementation_->Url(); }

} // namespace demo
