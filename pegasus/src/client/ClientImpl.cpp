#include "client/ClientImpl.h"

#include "client/ServersError.h"
#include "http/TimeOut.h"
#include "model/OperationTypes.h"

#include <Pegasus/Client/ExchangeObserver.h>

#include <chrono>
#include <string_view>

namespace Pegasus {
inline namespace bundled {

namespace {

std::string textOf(const String& text) { return std::string(text.view()); }

} // namespace

/// What one operation has taken so far.
class CIMClient::Impl::Measurement {
  public:
    explicit Measurement(const char* method) : method_(method) {}

    client::AnswerRemarks remarks;
    Uint64 requestSize = 0;
    Uint64 responseSize = 0;

    ClientOpPerformanceData data() const {
        const auto elapsed = std::chrono::steady_clock::now() - begin_;
        return {detail::operationTypeOf(method_),
                remarks.serverMicroseconds.has_value(),
                remarks.serverMicroseconds.value_or(0),
                static_cast<Uint64>(std::chrono::duration_cast<std::chrono::microseconds>(elapsed).count()),
                requestSize,
                responseSize};
    }

  private:
    const char* method_;
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

/// The end of an operation, looked at while its answer is decoded.
class CIMClient::Impl::EndOfTime : public cimxml::Checkpoint {
  public:
    EndOfTime(const http::Endpoint& endpoint, const http::Deadline& deadline)
        : endpoint_(endpoint), deadline_(deadline) {}

    void pass() const override {
        if (deadline_.remaining() == http::Deadline::Clock::duration::zero()) {
            http::throwTimeOut(endpoint_, deadline_, "the answer was not read");
        }
    }

  private:
    const http::Endpoint& endpoint_;
    const http::Deadline& deadline_;
};

void CIMClient::Impl::setObserver(std::shared_ptr<ExchangeObserver> observer) {
    observer_ = std::move(observer);
    if (connection_) {
        connection_->setObserver(observer_);
    }
}

void CIMClient::Impl::setLimits(const ClientLimits& limits) {
    limits_ = limits;
    if (connection_) {
        connection_->setLimits(limits);
    }
}

void CIMClient::Impl::connect(const String& host, Uint32 port, const std::optional<SSLContext>& tls, const String& user,
                              const String& password) {
    if (connection_) {
        throw AlreadyConnectedException();
    }
    withinMemory([&] {
        try {
            connection_.emplace(http::Endpoint(textOf(host), port), tls,
                                http::Credentials{textOf(user), textOf(password)});
            connection_->setLimits(limits_);
            connection_->setObserver(observer_);
            connection_->open(deadline());
            outOfMemory_ = String(connection_->endpoint().text() + ": " + kOutOfMemory);
        } catch (...) {
            connection_.reset();
            throw;
        }
    });
}

void CIMClient::Impl::disconnect() {
    checkIdle();
    connection_.reset();
}

void CIMClient::Impl::checkReady() const {
    if (!connection_) {
        throw NotConnectedException();
    }
    checkIdle();
}

void CIMClient::Impl::checkIdle() const {
    if (isReceiving_) {
        throw Exception("the client is in use: it is handing over the instances of an answer");
    }
}

void CIMClient::Impl::receive(const std::string& messageId, const char* method, const http::HttpRequest& request,
                              client::ReturnValueSink& sink) {
    const http::Deadline end = deadline();
    const EndOfTime endOfTime(connection_->endpoint(), end);
    cimxml::ResponseDecoder decoder(messageId, method, sink, objects_, limits_, &endOfTime,
                                    lenient ? &findings : nullptr);
    Measurement measurement(method);
    isReceiving_ = true;
    try {
        exchange(request, decoder, end, endOfTime, measurement);
    } catch (const CIMException& error) { // a good answer, though not the one hoped for
        isReceiving_ = false;
        client::ServersError named(error, connection_->endpoint(), method);
        named.setContentLanguages(measurement.remarks.languages);
        report(measurement); // whose handler may disconnect
        throw named;
    } catch (...) {
        isReceiving_ = false;
        connection_->close();
        throw;
    }
    isReceiving_ = false;
    lastAnswerBytes_ = decoder.bytes();
    report(measurement);
}

void CIMClient::Impl::report(const Measurement& measurement) const {
    if (performanceHandler != nullptr) {
        performanceHandler->handleClientOpPerformanceData(measurement.data());
    }
}

http::Deadline CIMClient::Impl::deadline() const { return http::Deadline(std::chrono::milliseconds(timeout)); }

void CIMClient::Impl::exchange(const http::HttpRequest& request, cimxml::ResponseDecoder& decoder,
                               const http::Deadline& end, const EndOfTime& endOfTime, Measurement& measurement) {
    measurement.requestSize = request.body.size();
    const http::HttpHead& head = connection_->post(request, end);
    checkAnswer(head, end);
    client::addRemarks(head.fields, measurement.remarks);
    const http::HttpFields& trailers = connection_->readBody(
        [&](std::string_view part) {
            endOfTime.pass();
            measurement.responseSize += part.size();
            decoder.feed(part);
        },
        end);
    client::addRemarks(trailers, measurement.remarks);
    client::checkCimTrailers(trailers, connection_->endpoint());
    decoder.finish();
}

void CIMClient::Impl::checkAnswer(const http::HttpHead& head, const http::Deadline& end) {
    try {
        client::checkCimAnswer(head, connection_->endpoint());
    } catch (...) {
        showRefused(std::current_exception(), end);
        throw;
    }
}

void CIMClient::Impl::showRefused(const std::exception_ptr& failure, const http::Deadline& end) {
    if (!connection_->isObserved()) {
        return;
    }
    try {
        connection_->readBody([&](std::string_view) { std::rethrow_exception(failure); },
                              end.ofStep(std::chrono::milliseconds(ExchangeObserver::kRestMilliseconds)));
    } catch (...) {
        // why it is refused counts
    }
}

} // namespace bundled
} // namespace Pegasus
