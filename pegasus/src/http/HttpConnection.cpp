#include "http/HttpConnection.h"

#include "errors/Marked.h"
#include "http/BasicAuthentication.h"

#include <Pegasus/Client/CIMClientException.h>

#include <chrono>
#include <utility>

namespace Pegasus::http {

HttpConnection::HttpConnection(Endpoint endpoint, std::optional<SSLContext> tls, Credentials credentials)
    : dialer_(std::move(endpoint), std::move(tls)), credentials_(std::move(credentials)) {}

HttpConnection HttpConnection::another() const {
    HttpConnection other(endpoint(), dialer_.tls(), credentials_);
    other.authenticates_ = authenticates_;
    return other;
}

void HttpConnection::setObserver(std::shared_ptr<ExchangeObserver> observer) {
    report_.setObserver(std::move(observer));
    if (reader_) {
        report_.prepare(*reader_);
    }
}

void HttpConnection::open(const Deadline& deadline) {
    close();
    report_.connecting(endpoint(), dialer_.encrypts());
    report_.during([&] { connect(deadline); });
}

void HttpConnection::connect(const Deadline& deadline) {
    const ConnectTime time(deadline, std::chrono::milliseconds(limits_.connectMilliseconds));
    auto channel = dialer_.open(time);
    reader_ = std::make_unique<ResponseReader>(*channel, endpoint());
    report_.prepare(*reader_);
    channel_ = std::move(channel);
    state_ = State::kFresh;
}

void HttpConnection::close() noexcept {
    reader_.reset();
    channel_.reset();
    state_ = State::kClosed;
}

const HttpHead& HttpConnection::post(const HttpRequest& request, const Deadline& deadline) {
    try {
        const HttpHead& head = exchangeHeads(request, deadline);
        if (!mayAuthenticate(head)) {
            return head;
        }
        authenticates_ = true;
        skipBody(deadline);
        return exchangeHeads(request, deadline);
    } catch (const ConnectionLost& lost) {
        close();
        throw errors::Marked<CannotConnectException, ClosedWithoutAnswer>(
            String(endpoint().text() + ": " + lost.reason +
                   (dialer_.encrypts() || hasAnswered_ ? "" : " (a port for TLS needs an SSLContext)")));
    } catch (...) {
        close();
        throw;
    }
}

const HttpFields& HttpConnection::readBody(const BodySink& sink, const Deadline& deadline) {
    try {
        report_.readBody(*reader_, sink, deadline);
    } catch (...) {
        close();
        throw;
    }
    finishAnswer();
    return reader_->trailers();
}

bool HttpConnection::readSome(const BodySink& sink, const Deadline& deadline) {
    try {
        if (!report_.readSome(*reader_, sink, deadline)) {
            return false;
        }
    } catch (...) {
        close();
        throw;
    }
    finishAnswer();
    return true;
}

void HttpConnection::abandon() noexcept {
    try {
        report_.ended();
    } catch (...) {
        // what an observer throws would end the operation, which ends here
    }
    close();
}

/// Sends the request over the connection as it is, or else, once, over a new one.
const HttpHead& HttpConnection::exchangeHeads(const HttpRequest& request, const Deadline& deadline) {
    const std::string bytes = serialise(request);
    if (state_ == State::kIdle && !channel_->hasInput()) {
        try {
            return attempt(request, bytes, deadline);
        } catch (const ConnectionLost&) {
            // Closed by the server while the request was on its way: no answer has begun, so it can be sent again.
        }
    }
    if (state_ != State::kFresh || channel_->isClosedByPeer()) {
        open(deadline);
    }
    return attempt(request, bytes, deadline);
}

const HttpHead& HttpConnection::attempt(const HttpRequest& request, const std::string& bytes,
                                        const Deadline& deadline) {
    state_ = State::kAnswering;
    report_.request(bytes, request.body.size());
    const HttpHead& head = report_.during([&]() -> const HttpHead& { return receiveHead(bytes, deadline); });
    report_.answerHead(*reader_);
    return head;
}

const HttpHead& HttpConnection::receiveHead(const std::string& bytes, const Deadline& deadline) {
    try {
        channel_->write(bytes, deadline);
    } catch (const ConnectionLost&) {
        // A server may refuse a request and close before it has read all of it: its answer is there to be read.
    }
    try {
        const HttpHead& head = reader_->readHead(deadline, limits_.interimAnswers);
        hasAnswered_ = true;
        return head;
    } catch (...) {
        report_.answerHead(*reader_); // what has arrived of it
        throw;
    }
}

bool HttpConnection::mayAuthenticate(const HttpHead& head) const {
    return head.status == kUnauthorized && !authenticates_ && !credentials_.user.empty() &&
           takesBasicAuthentication(head.fields);
}

/// Leaves the connection ready for the next request, or closed.
void HttpConnection::skipBody(const Deadline& deadline) {
    if (!reader_->keepsConnection()) {
        close(); // also where only the connection's end would tell the body's
        return;
    }
    try {
        report_.readBody(
            *reader_, [](std::string_view) {}, deadline);
        finishAnswer();
    } catch (const CIMClientMalformedHTTPException&) {
        close(); // what the body says is not wanted, nor is its end
    }
}

void HttpConnection::finishAnswer() {
    if (reader_->keepsConnection() && !reader_->hasSurplus()) {
        state_ = State::kIdle;
    } else {
        channel_.reset();
        state_ = State::kClosed;
    }
}

std::string HttpConnection::serialise(const HttpRequest& request) const {
    std::string bytes = "POST " + request.target + " HTTP/1.1\r\nHost: " + endpoint().text() + "\r\n" + request.fields;
    if (authenticates_) {
        bytes += "Authorization: " + basicAuthorization(credentials_.user, credentials_.password) + "\r\n";
    }
    bytes += "Content-Length: " + std::to_string(request.body.size()) + "\r\n\r\n";
    return bytes + request.body;
}

} // namespace Pegasus::http
