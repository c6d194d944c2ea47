#include "server/HttpListener.h"

#include "server/Answer.h"
#include "server/ChunkedBody.h"
#include "wire/CimError.h"
#include "wire/CimRequest.h"
#include "wire/PercentEncoding.h"

#include <httplib.h>

#include <sys/socket.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace demo {

namespace {

constexpr const char* kPath = "/cimom";
constexpr const char* kXmlType = "application/xml; charset=utf-8";

constexpr std::size_t kMaxRequestBytes = 4 * 1024 * 1024;
constexpr std::size_t kMaxConnections = 256;
constexpr std::size_t kMaxRequestsPerConnection = 1'000'000;
/// How long an idle connection is kept; stopping waits as long at most.
constexpr time_t kIdleSeconds = 5;
constexpr time_t kReadSeconds = 15;
constexpr time_t kWriteSeconds = 30;

constexpr int kOk = 200;
constexpr int kBadRequest = 400;
constexpr int kUnauthorized = 401;
constexpr int kNotFound = 404;
constexpr int kMethodNotAllowed = 405;
constexpr int kPayloadTooLarge = 413;
constexpr int kUnsupportedMediaType = 415;
constexpr int kNotImplemented = 501;

/// One thread for each connection, started when it is needed and used again, up to a limit; connections beyond it wait.
class ConnectionThreads : public httplib::TaskQueue {
  public:
    void enqueue(std::function<void()> connection) override {
        const std::lock_guard<std::mutex> lock(mutex_);
        waiting_.push_back(std::move(connection));
        if (waiting_.size() > idle_ && threads_.size() < kMaxConnections)
            threads_.emplace_back([this] { Run(); });
        changed_.notify_one();
    }

    void shutdown() override {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            isOver_ = true;
        }
        changed_.notify_all();
        for (auto& thread : threads_)
            thread.join();
    }

  private:
    void Run() {
        std::unique_lock<std::mutex> lock(mutex_);
        for (;;) {
            ++idle_;
            changed_.wait(lock, [this] { return isOver_ || !waiting_.empty(); });
            --idle_;
            if (waiting_.empty())
                return;
            const auto connection = std::move(waiting_.front());
            waiting_.pop_front();
            lock.unlock();
            connection();
            lock.lock();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> waiting_;
    std::vector<std::thread> threads_;
    std::size_t idle_ = 0;
    bool isOver_ = false;
};

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

/// Chunks can be sent to every HTTP/1.1 client, trailers to those that ask for them.
bool TakesTrailers(const httplib::Request& request) {
    return request.version == "HTTP/1.1" && ContainsIgnoringCase(request.get_header_value("TE"), "trailers");
}

/// The extension headers of DSP0200 repeat what stands in the body, for firewalls and proxies.
void CheckOperationHeader(const httplib::Request& request) {
    const std::string operation = request.get_header_value("CIMOperation");
    if (!SameName(operation, "MethodCall"))
        throw HttpError(kBadRequest, "unsupported-operation",
                        "the header CIMOperation must be MethodCall, not \"" + operation + '"');
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

CimRequest ReadOperation(const httplib::Request& request, const std::string& body) {
    CheckOperationHeader(request);
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
    Implementation(const CimService& service, const std::string& address, int port, const Credentials* credentials,
                   const Certificate* certificate)
        : service_(service),
          credentials_(credentials),
          url_((certificate ? "https://" : "http://") + address + ':' + std::to_string(port)),
          server_(MakeServer(certificate)) {
        Configure();
        Bind(address, port);
        thread_ = std::thread([this] {
            server_->listen_after_bind();
            hasEnded_ = true;
        });
        // Before it runs, httplib could not be stopped.
        while (!server_->is_running() && !hasEnded_)
            std::this_thread::yield();
    }

    ~Implementation() {
        server_->stop();
        thread_.join();
    }

    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;

    const std::string& Url() const { return url_; }

  private:
    static std::unique_ptr<httplib::Server> MakeServer(const Certificate* certificate) {
        if (!certificate)
            return std::make_unique<httplib::Server>();
        auto server = std::make_unique<httplib::SSLServer>(certificate->Get(), certificate->Key());
        if (!server->is_valid() || SSL_CTX_set_min_proto_version(server->ssl_context(), TLS1_2_VERSION) != 1)
            throw std::runtime_error("OpenSSL does not take the certificate made for HTTPS");
        return server;
    }

    void Configure();
    void Bind(const std::string& address, int port);

    void Serve(const httplib::Request& request, httplib::Response& response,
               const httplib::ContentReader& readContent) const;
    void StreamTo(httplib::Response& response, CimRequest operation) const;

    const CimService& service_;
    const Credentials* credentials_;
    std::string url_;
    std::unique_ptr<httplib::Server> server_;
    std::atomic<bool> hasEnded_ = false;
    std::thread thread_;
};

void HttpListener::Implementation::Configure() {
    server_->new_task_queue = [] { return new ConnectionThreads(); };
    server_->set_keep_alive_max_count(kMaxRequestsPerConnection);
    server_->set_keep_alive_timeout(kIdleSeconds);
    server_->set_read_timeout(kReadSeconds);
    server_->set_write_timeout(kWriteSeconds);
    server_->set_payload_max_length(kMaxRequestBytes);
    server_->set_tcp_nodelay(true);

    server_->set_pre_routing_handler([](const httplib::Request& request, httplib::Response& response) {
        if (request.path == kPath && request.method == "POST")
            return httplib::Server::HandlerResponse::Unhandled;
        response.status = request.path == kPath ? kMethodNotAllowed : kNotFound;
        if (response.status == kMethodNotAllowed)
            response.set_header("Allow", "POST");
        CloseAfter(response);
        return httplib::Server::HandlerResponse::Handled;
    });
    server_->Post(kPath, [this](const httplib::Request& request, httplib::Response& response,
                                const httplib::ContentReader& readContent) { Serve(request, response, readContent); });
    // What httplib refuses by itself comes here with 400 and without a CIMError: among others, methods it does not
    // know.
    server_->set_error_handler([](const httplib::Request& request, httplib::Response& response) {
        if (response.status != kBadRequest || response.has_header("CIMError"))
            return;
        const bool isMethod =
            !request.method.empty() && std::all_of(request.method.begin(), request.method.end(),
                                                   [](char c) { return c == '-' || std::isupper(c); });
        if (isMethod && request.version.rfind("HTTP/1.", 0) == 0)
            response.status = kNotImplemented;
        CloseAfter(response);
    });
}

void HttpListener::Implementation::Bind(const std::string& address, int port) {
    int socket = -1;
    // Not httplib's own options: they would let a second server share the port unnoticed.
    server_->set_socket_options([&](int created) {
        const int yes = 1;
        ::setsockopt(created, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
        socket = created;
    });
    errno = 0;
    if (!server_->bind_to_port(address, port)) {
        const int error = errno;
        throw ListenError("cannot listen on " + address + " port " + std::to_string(port) + ": " +
                          (error == 0 ? "the address is not one of this machine's" : std::strerror(error)));
    }
    // httplib's queue of five is too short for clients that come all at once.
    ::listen(socket, SOMAXCONN);
    server_->set_socket_options(nullptr);
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
        if (body.size() + length > kMaxRequestBytes)
            return false;
        body.append(data, length);
        return true;
    });
    if (!isComplete) {
        response.status = kPayloadTooLarge;
        CloseAfter(response);
        return;
    }
    if (credentials_ && !credentials_->Accept(request.get_header_value("Authorization"))) {
        response.status = kUnauthorized;
        response.set_header("WWW-Authenticate", "Basic realm=\"demo-server\"");
        return;
    }
    try {
        CimRequest operation = ReadOperation(request, body);
        response.status = kOk;
        response.set_header("CIMOperation", "MethodResponse");
        if (TakesTrailers(request))
            StreamTo(response, std::move(operation));
        else
            response.set_content(Answer(service_, operation), kXmlType);
    } catch (const HttpError& error) {
        Refuse(response, error);
    }
}

void HttpListener::Implementation::StreamTo(httplib::Response& response, CimRequest operation) const {
    response.set_header("Transfer-Encoding", "chunked");
    response.set_header("Trailer", "CIMStatusCode, CIMStatusCodeDescription");
    // httplib's own chunks cannot have trailers, so that it is told to send a body of unknown length as it is.
    response.set_content_provider(
        kXmlType, [this, operation = std::move(operation)](std::size_t, httplib::DataSink& sink) {
            ChunkedBody body([&](std::string_view bytes) { return sink.write(bytes.data(), bytes.size()); });
            try {
                const auto error = StreamAnswer(service_, operation, [&](std::string_view text) { body.Write(text); });
                ChunkedBody::Trailers trailers;
                if (error)
                    trailers = {{"CIMStatusCode", error->Code()},
                                {"CIMStatusCodeDescription", PercentEncode(error->what())}};
                body.Finish(trailers);
            } catch (const OutputClosed&) {
                return false;
            }
            sink.done();
            return true;
        });
}

HttpListener::HttpListener(const CimService& service, const std::string& address, int port,
                           const Credentials* credentials, const Certificate* certificate)
    : implementation_(std::make_unique<Implementation>(service, address, port, credentials, certificate)) {}

HttpListener::~HttpListener() = default;

std::string HttpListener::Url() const { return implementation_->Url(); }

} // namespace demo
