#include "web/WebConnection.h"

#include "text/Ascii.h"
#include "web/QueryText.h"

#include <boost/asio/post.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/ssl.hpp>

#include <exception>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace cimhttp {

namespace {

namespace beast = boost::beast;
namespace http = boost::beast::http;
namespace net = boost::asio;

using Error = boost::system::error_code;
using Plain = beast::tcp_stream;
using Tls = beast::ssl_stream<beast::tcp_stream>;
using Request = http::request<http::string_body>;
using Response = http::response<http::string_body>;

WebRequest RequestOf(const Request& request) {
    const auto target = request.target();
    const std::string text(target.data(), target.size());
    const std::size_t query = text.find('?');
    WebRequest result{text.substr(0, query), {}, {}, request.method() == http::verb::post, request.body()};
    if (query != std::string::npos) {
        result.parameters = QueryParameters(text.substr(query + 1));
    }
    for (const auto& field : request) {
        const auto name = field.name_string();
        const auto value = field.value();
        result.headers.emplace(AsciiLower(std::string(name.data(), name.size())),
                               std::string(value.data(), value.size()));
    }
    return result;
}

bool TakesPosts(const WebLimits& limits) { return limits.bodyBytes > 0; }

bool IsAnswered(http::verb method, const WebLimits& limits) {
    return method == http::verb::get || method == http::verb::head ||
           (method == http::verb::post && TakesPosts(limits));
}

std::string MethodsOf(const WebLimits& limits) { return TakesPosts(limits) ? "GET, HEAD, POST" : "GET, HEAD"; }

WebAnswer AnswerTo(const Request& request, WebService& service) {
    try {
        const auto authorization = request[http::field::authorization];
        if (!service.login.Accepts(std::string(authorization.data(), authorization.size()))) {
            return {401, "text/plain; charset=utf-8", "Who are you? Log in.\n"};
        }
        if (!IsAnswered(request.method(), service.limits)) {
            return {405, "text/plain; charset=utf-8", "Only " + MethodsOf(service.limits) + " are answered.\n"};
        }
        return service.handler(RequestOf(request));
    } catch (const std::exception& exception) {
        return {500, "text/plain; charset=utf-8", std::string(exception.what()) + '\n'};
    }
}

Response ResponseOf(const Request& request, WebAnswer answer, const WebLimits& limits) {
    Response response(static_cast<http::status>(answer.status), request.version());
    response.keep_alive(request.keep_alive());
    response.set(http::field::content_type, answer.type);
    response.set("X-Content-Type-Options", "nosniff");
    response.set(http::field::cache_control, "no-store");
    if (answer.status == 401) {
        response.set(http::field::www_authenticate, "Basic realm=\"cimhttp\"");
    }
    if (answer.status == 405) {
        response.set(http::field::allow, MethodsOf(limits));
    }
    for (const auto& [name, value] : answer.headers) {
        response.set(name, value);
    }
    response.content_length(answer.body.size());
    if (request.method() != http::verb::head) {
        response.body() = std::move(answer.body);
    }
    return response;
}

/// Lives as long as an operation on its stream is under way.
template <typename Stream>
class Connection : public std::enable_shared_from_this<Connection<Stream>> {
  public:
    Connection(Stream stream, WebService& service) : stream_(std::move(stream)), service_(service) {
        ++service_.connections;
    }
    ~Connection() { --service_.connections; }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void Begin() {
        if constexpr (std::is_same_v<Stream, Tls>) {
            Limit(service_.limits.transfer);
            stream_.async_handshake(net::ssl::stream_base::server, [self = Self()](const Error& error) {
                if (!error) {
                    self->ReadNext();
                }
            });
        } else {
            ReadNext();
        }
    }

  private:
    auto Self() { return this->shared_from_this(); }

    void Limit(std::chrono::seconds time) { beast::get_lowest_layer(stream_).expires_after(time); }

    void ReadNext() {
        parser_.emplace();
        parser_->header_limit(static_cast<std::uint32_t>(service_.limits.headerBytes));
        parser_->body_limit(service_.limits.bodyBytes);
        Limit(isFirst_ ? service_.limits.transfer : service_.limits.idle);
        isFirst_ = false;
        http::async_read(stream_, buffer_, *parser_, [self = Self()](const Error& error, std::size_t /*count*/) {
            if (!error) {
                self->Answer();
            } else if (error.category() == http::make_error_code(http::error::bad_target).category() &&
                       error != http::error::end_of_stream && error != http::error::partial_message) {
                self->Write({400, "text/plain; charset=utf-8",
                             "This is no request that is understood: " + error.message() + "\n"},
                            false);
            }
        });
    }

    /// In a thread of the workers, so that other connections go on.
    void Answer() {
        beast::get_lowest_layer(stream_).expires_never();
        service_.answers.Begin();
        net::post(service_.workers, [self = Self()] {
            auto answer = std::make_shared<WebAnswer>(AnswerTo(self->parser_->get(), self->service_));
            net::post(self->stream_.get_executor(), [self, answer] { self->Write(std::move(*answer), true); });
        });
    }

    void Write(WebAnswer answer, bool isCounted) {
        response_ = ResponseOf(parser_->get(), std::move(answer), service_.limits);
        if (!isCounted) {
            response_.keep_alive(false);
        }
        Limit(service_.limits.transfer);
        if (parser_->get().method() == http::verb::head && isCounted) {
            serializer_.emplace(response_);
            http::async_write_header(stream_, *serializer_, Written(isCounted));
        } else {
            http::async_write(stream_, response_, Written(isCounted));
        }
    }

    auto Written(bool isCounted) {
        return [self = Self(), isCounted](const Error& error, std::size_t /*count*/) {
            if (isCounted) {
                self->service_.answers.End();
            }
            if (!error && self->response_.keep_alive()) {
                self->ReadNext();
            } else {
                self->End();
            }
        };
    }

    void End() {
        if constexpr (std::is_same_v<Stream, Tls>) {
            Limit(service_.limits.transfer);
            stream_.async_shutdown([self = Self()](const Error& /*error*/) {});
        } else {
            Error ignored;
            stream_.socket().shutdown(net::ip::tcp::socket::shutdown_send, ignored);
        }
    }

    Stream stream_;
    WebService& service_;
    beast::flat_buffer buffer_;
    std::optional<http::request_parser<http::string_body>> parser_;
    Response response_;
    std::optional<http::response_serializer<http::string_body>> serializer_;
    bool isFirst_ = true;
};

} // namespace

void ServeWebConnection(net::ip::tcp::socket socket, net::ssl::context* tls, WebService& service) {
    if (service.connections >= service.limits.connections) {
        return;
    }
    if (tls) {
        std::make_shared<Connection<Tls>>(Tls(Plain(std::move(socket)), *tls), service)->Begin();
    } else {
        std::make_shared<Connection<Plain>>(Plain(std::move(socket)), service)->Begin();
    }
}

} // namespace cimhttp
