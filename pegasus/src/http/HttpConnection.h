#pragma once

#include "http/Channel.h"
#include "http/Deadline.h"
#include "http/Dialer.h"
#include "http/Endpoint.h"
#include "http/ExchangeReport.h"
#include "http/HttpHead.h"
#include "http/ResponseReader.h"

#include <Pegasus/Client/ClientLimits.h>
#include <Pegasus/Common/SSLContext.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace Pegasus::http {

/// A request, without the fields that the connection adds: Host, Authorization, Content-Length.
struct HttpRequest {
    std::string target;
    std::string fields; ///< whole lines, each with its line end
    std::string body;
};

struct Credentials {
    std::string user; ///< empty: none are given
    std::string password;
};

/// A client of one server. It carries one exchange after the other, over one TCP connection as long as the server keeps
/// it, and opens the next one where needed.
///
/// An exchange is a post() and, after it, a readBody(), or readSome() until the body is read. An exception from either
/// closes the TCP connection; so does a post() that finds the previous exchange unfinished.
class HttpConnection {
  public:
    HttpConnection(Endpoint endpoint, std::optional<SSLContext> tls, Credentials credentials);

    /// Another connection to the same server, which is not open, with the same credentials; they are sent at once where
    /// this one sends them, too.
    HttpConnection another() const;

    const Endpoint& endpoint() const { return dialer_.endpoint(); }

    /// Sets the limits of the next exchanges: the time for each step of connecting, and the number of interim answers.
    void setLimits(const ClientLimits& limits) { limits_ = limits; }

    /// Sets the observer of all exchanges from the next one on; null for none.
    void setObserver(std::shared_ptr<ExchangeObserver> observer);
    bool isObserved() const { return report_.isObserved(); }

    /// Opens the TCP connection. Throws like Channel::open().
    void open(const Deadline& deadline);

    /// Sends a request and returns the head of the answer, valid until the next call.
    ///
    /// A server may close a connection before it is used, or used again: the request then goes over a new one. It is
    /// sent twice only when the server closes a used connection just as the request is on its way.
    /// When the server asks for Basic authentication, or for a login of no scheme, the request is sent again with the
    /// credentials, and so are all later ones, also over a new TCP connection to the same server; without credentials
    /// the 401 is the answer.
    /// Throws like open(), CannotConnectException when a new connection ends without an answer,
    /// ConnectionTimeoutException, CIMClientMalformedHTTPException.
    const HttpHead& post(const HttpRequest& request, const Deadline& deadline);

    /// Hands the body to the sink and returns the trailers, valid until the next call. Throws
    /// ConnectionTimeoutException, CIMClientMalformedHTTPException and what the sink throws.
    const HttpFields& readBody(const BodySink& sink, const Deadline& deadline);

    /// Reads on in the body, see ResponseReader::readSome(). True when it is read; then trailers() has the trailers,
    /// valid until the next call. Throws as readBody() does.
    bool readSome(const BodySink& sink, const Deadline& deadline);
    const HttpFields& trailers() const { return reader_->trailers(); }

    /// Whether readSome() finds something to read without waiting. To be called while the body is not read.
    bool hasInput() const { return reader_->hasInput(); }

    /// Closes the TCP connection while the body of an answer is not read, which is reported to the observer.
    void abandon() noexcept;

    /// Closes the TCP connection; the next exchange opens another one.
    void close() noexcept;

  private:
    enum class State {
        kClosed,
        kFresh,     // connected, and never asked anything
        kIdle,      // has carried an exchange to its end
        kAnswering, // the head of an answer is read, its body is not
    };

    const HttpHead& exchangeHeads(const HttpRequest& request, const Deadline& deadline);
    void connect(const Deadline& deadline);
    const HttpHead& attempt(const HttpRequest& request, const std::string& bytes, const Deadline& deadline);
    const HttpHead& receiveHead(const std::string& bytes, const Deadline& deadline);
    bool mayAuthenticate(const HttpHead& head) const;
    void skipBody(const Deadline& deadline);
    void finishAnswer();
    std::string serialise(const HttpRequest& request) const;

    Dialer dialer_;
    const Credentials credentials_;
    ClientLimits limits_;
    ExchangeReport report_;
    bool authenticates_ = false;
    bool hasAnswered_ = false; // the server, over this connection or one before
    State state_ = State::kClosed;
    std::unique_ptr<Channel> channel_;
    std::unique_ptr<ResponseReader> reader_;
};

} // namespace Pegasus::http
