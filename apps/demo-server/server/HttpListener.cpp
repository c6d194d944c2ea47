#include "server/HttpListener.h"

#include "server/Answer.h"
#include "server/ChunkedBody.h"
#include "server/Connection.h"
#include "server/ConnectionThreads.h"
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

/// An answer up to this size has a Content-Length; a longer one is not kept in memory.
constexpr std::size_t kMaxBufferedAnswer = std::size_t{4} * 1024 * 1024;

constexpr int kOk = 200;
constexpr int kBadRequest = 400;
constexpr int kUnauthorized = 401;
constexpr int kNotFound = 404;
constexpr int kMethodNotAllowed = 405;
constexpr int kPayloadTooLarge = 413;
constexpr int kUnsupportedMediaType = 415;
constexpr int kHeadersTooLarge = 431;
constexpr int kNotImplemented = 501;

class TaskQueue : public httplib::TaskQueue {
  public:
    void enqueue(std::function<void()> connection) override { threads_.Enqueue(std::move(connection)); }
    void shutdown() override { threads_.Shutdown(); }

  private:
    ConnectionThreads threads_;
};

/// What httplib reads from and writes to. Small pieces wait for each other, so that a short answer leaves in one
/// packet.
class ConnectionStream : public httplib::Stream {
  public:
    explicit ConnectionStream(Connection& connection) : connection_(connection) {}

    /// Sends what is waiting. False when the client does not take it.
    bool Flush() {
        std::string_view rest = waiting_;
        while (!rest.empty()) {
            const ssize_t count = connection_.Write(rest.data(), rest.size());
            if (count <= 0)
                return false;
            rest.remove_prefix(static_cast<std::size_t>(count));
        }
        waiting_.clear();
        return true;
    }

    bool is_readable() const override { return true; }
    bool is_writable() const override { return true; }
    ssize_t read(char* data, std::size_t size) override { return Flush() ? connection_.Read(data, size) : -1; }
    ssize_t write(const char* data, std::size_t size) override {
        waiting_.append(data, size);
        return waiting_.size() < kWaitingBytes || Flush() ? static_cast<ssize_t>(size) : -1;
    }
    // Nobody asks httplib who the client is.
    void get_remote_ip_and_port(std::string& /*ip*/, int& /*port*/) const override {}
    void get_local_ip_and_port(std::string& /*ip*/, int& /*port*/) const override {}
    socket_t socket() const override { return connection_.Socket(); }

  private:
    static constexpr std::size_t kWaitingBytes = std::size_t{32} * 1024;

    Connection& connection_;
    std::string waiting_;
};

/// A request and its answer, from the first byte to the last.
struct Exchange {
    Connection& connection;
    AccessRecord record;
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
    Server(SSL_CTX* context, const StopSignal& stop, AccessLog* log) : context_(context), stop_(stop), log_(log) {}

    /// That of the calling handler.
    Exchange& CurrentExchange() const { return exchanges_.OfThisThread(); }

  private:
    bool process_and_close_socket(socket_t socket) override {
        Connection connection(socket, context_, stop_);
        const std::string client = connection.PeerAddress();
        bool isClosing = false;
        while (!isClosing && connection.WaitForRequest()) {
            Exchange exchange{connection, {}};
            exchange.record.begin = std::chrono::system_clock::now();
            exchange.record.client = client;
            if (!Process(exchange, isClosing))
                break;
        }
        return true;
    }

    bool Process(Exchange& exchange, bool& isClosing) {
        const auto begin = std::chrono::steady_clock::now();
        const auto writtenBefore = exchange.connection.WrittenBytes();
        ConnectionStream stream(exchange.connection);
        exchanges_.Begin(exchange);
        const bool isProcessed = process_request(stream, stop_.IsRaised(), isClosing, nullptr);
        exchanges_.End();
        const bool isSent = stream.Flush(); // also where the connection ends behind the answer
        exchange.record.bytes = exchange.connection.WrittenBytes() - writtenBefore;
        exchange.record.duration =
            std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);
        if (log_)
            log_->Write(exchange.record);
        return isProcessed && isSent;
    }

    SSL_CTX* context_;
    const StopSignal& stop_;
    AccessLog* log_;
    Exchanges exchanges_;
};

using TlsContext = std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)>;

/// Null without a certificate.
TlsContext MakeTlsContext(const Certificate* certificate) {
    TlsContext context(certificate ? SSL_CTX_new(TLS_server_method()) : nullptr, &SSL_CTX_free);
    if (certificate && (!context || SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION) != 1 ||
                        SSL_CTX_use_certificate(context.get(), certificate->Get()) != 1 ||
                        SSL_CTX_use_PrivateKey(context.get(), certificate->Key()) != 1))
        throw std::runtime_error("OpenSSL does not take the certificate made for HTTPS");
    return context;
}

/// Makes the connection end behind this answer, for when the rest of the request is not worth reading: a body that
/// fails is how httplib closes one.
void CloseAfter(httplib::Response& response) {
    response.body.clear();
    response.set_header("Connection", "close");
    response.set_content_provider("text/plain", [](std::size_t, httplib::DataSink&) { return false; });
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
    if (!SameName(operation, "MethodCall"))
        throw HttpError(kBadRequest, "unsupported-operation",
                        "the header CIMOperation must be MethodCall, not \"" + operation + '"');
}

/// The header is optional; without it, the version in the body is all that is to be known.
void CheckProtocolVersion(const httplib::Request& request) {
    const std::string version = request.get_header_value("CIMProtocolVersion");
    if (!version.empty() && version.rfind("1.", 0) != 0)
        throw HttpError(kNotImplemented, "unsupported-protocol-version",
                        "CIMProtocolVersion " + version + " is not supported");
}

void CheckRepeated(const httplib::Request& request, const char* header, const std::string& inBody) {
    const std::string inHeader = PercentDecode(request.get_header_value(header));
    if (!request.has_header(header))
        throw HttpError(kBadRequest, "header-mismatch", std::string("the header ") + header + " is missing");
    if (!SameName(inHeader, inBody))
        throw HttpError(kBadRequest, "header-mismatch",
                        std::string("the header ") + header + " is \"" + inHeader + "\", the request says \"" + inBody +
                            '"');
}

/// For the log.
std::string StatusOf(const std::optional<CimError>& error) { return error ? error->Code() : "0"; }

CimRequest ReadOperation(const httplib::Request& request, const std::string& body) {
    CheckOperationHeader(request);
    CheckProtocolVersion(request);
    CimRequest operation = ReadRequest(body);
    CheckRepeated(request, "CIMMethod", operation.method);
    // That of an extrinsic method is an object path, which can be written in many ways.
    if (operation.kind == CimRequest::Kind::kIntrinsic)
        CheckRepeated(request, "CIMObject", operation.nameSpace);
    return operation;
}

} // namespace

class HttpListener::Implementation {
  public:
    Implementation(const CimService& service, const Users& users, AccessLog* log, const std::string& address, int port,
                   const Certificate* certificate)
        : service_(service),
          users_(users),
          url_((certificate ? "https://" : "http://") + address + ':' + std::to_string(port)),
          context_(MakeTlsContext(certificate)),
          server_(context_.get(), stop_, log) {
        Configure();
        Bind(address, port);
        thread_ = std::thread([this] { server_.listen_after_bind(); });
    }

    ~Implementation() {
        stop_.Raise();
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

    void Serve(const httplib::Request& request, httplib::Response& response,
               const httplib::ContentReader& readContent) const;
    bool IsLetIn(const httplib::Request& request) const;
    void Respond(const httplib::Request& request, httplib::Response& response, CimRequest operation) const;
    void StreamTo(httplib::Response& response, CimRequest operation, bool withTrailers) const;

    const CimService& service_;
    const Users& users_;
    std::string url_;
    StopSignal stop_;
    TlsContext context_;
    Server server_;
    int socket_ = -1;
    std::thread thread_;
};

void HttpListener::Implementation::Configure() {
    server_.new_task_queue = [] { return new TaskQueue(); };
    server_.set_payload_max_length(Connection::kMaxBodyBytes);
    server_.set_tcp_nodelay(true);

    server_.set_pre_routing_handler([](const httplib::Request& request, httplib::Response& response) {
        if (request.path == kPath && request.method == "POST")
            return httplib::Server::HandlerResponse::Unhandled;
        response.status = request.path == kPath ? kMethodNotAllowed : kNotFound;
        if (response.status == kMethodNotAllowed)
            response.set_header("Allow", "POST");
        CloseAfter(response);
        return httplib::Server::HandlerResponse::Handled;
    });
    server_.Post(kPath, [this](const httplib::Request& request, httplib::Response& response,
                               const httplib::ContentReader& readContent) { Serve(request, response, readContent); });
    // What httplib refuses by itself comes here with 400 and without a CIMError: among others, headers that it could
    // not read to the end, and methods that it does not know, such as the M-POST of DSP0200.
    server_.set_error_handler([this](const httplib::Request& request, httplib::Response& response) {
        if (response.status != kBadRequest || response.has_header("CIMError"))
            return;
        if (server_.CurrentExchange().connection.HasTooLongHeaders())
            response.status = kHeadersTooLarge;
        else if (IsUnknownMethod(request))
            response.status = kNotImplemented;
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
                                         const httplib::ContentReader& readContent) const {
    if (!IsXml(request.get_header_value("Content-Type"))) {
        response.status = kUnsupportedMediaType;
        CloseAfter(response);
        return;
    }
    std::string body;
    const bool isComplete = readContent([&](const char* data, std::size_t length) {
        if (body.size() + length > Connection::kMaxBodyBytes)
            return false;
        body.append(data, length);
        return true;
    });
    if (!isComplete) {
        response.status = kPayloadTooLarge;
        CloseAfter(response);
        return;
    }
    if (!IsLetIn(request)) {
        response.status = kUnauthorized;
        response.set_header("WWW-Authenticate", "Basic realm=\"demo-server\"");
        return;
    }
    try {
        CimRequest operation = ReadOperation(request, body);
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

bool HttpListener::Implementation::IsLetIn(const httplib::Request& request) const {
    if (users_.IsEmpty())
        return true;
    const auto user = users_.Authenticate(request.get_header_value("Authorization"));
    if (user)
        server_.CurrentExchange().record.user = *user;
    return user.has_value();
}

void HttpListener::Implementation::Respond(const httplib::Request& request, httplib::Response& response,
                                           CimRequest operation) const {
    if (TakesTrailers(request)) {
        StreamTo(response, std::move(operation), true);
        return;
    }
    const auto limit = TakesChunks(request) ? kMaxBufferedAnswer : std::numeric_limits<std::size_t>::max();
    if (const auto answer = Answer(service_, operation, limit)) {
        server_.CurrentExchange().record.cimStatus = StatusOf(answer->error);
        response.set_content(answer->text, kXmlType);
    } else {
        StreamTo(response, std::move(operation), false);
    }
}

void HttpListener::Implementation::StreamTo(httplib::Response& response, CimRequest operation,
                                            bool withTrailers) const {
    response.set_header("Transfer-Encoding", "chunked");
    if (withTrailers)
        response.set_header("Trailer", "CIMStatusCode, CIMStatusCodeDescription");
    // httplib's own chunks cannot have trailers, so that it is told to send a body of unknown length as it is.
    response.set_content_provider(
        kXmlType, [this, operation = std::move(operation), withTrailers](std::size_t, httplib::DataSink& sink) {
            ChunkedBody body([&](std::string_view bytes) { return sink.write(bytes.data(), bytes.size()); });
            try {
                const auto error = StreamAnswer(service_, operation, [&](std::string_view text) { body.Write(text); });
                server_.CurrentExchange().record.cimStatus = StatusOf(error);
                // Without trailers, a body that breaks off is the only way to tell.
                if (error && !withTrailers)
                    return false;
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
                           int port, const Certificate* certificate)
    : implementation_(std::make_unique<Implementation>(service, users, log, address, port, certificate)) {}

HttpListener::~HttpListener() = default;

std::string HttpListener::Url() const { return implementation_->Url(); }

} // namespace demo
