#include "client/ClientImpl.h"

#include "client/ServersError.h"
#include "http/TimeOut.h"
#include "model/OperationTypes.h"

#include <Pegasus/Client/ExchangeObserver.h>

#include <chrono>
#include <string_view>
#include <utility>

namespace Pegasus {
inline namespace bundled {

namespace {

std::string textOf(const String& text) { return std::string(text.view()); }

} // namespace

ClientOpPerformanceData CIMClient::Impl::Measurement::data() const {
    const auto elapsed = Clock::now() - begin_;
    return {detail::operationTypeOf(method_),
            remarks.serverMicroseconds.has_value(),
            remarks.serverMicroseconds.value_or(0),
            static_cast<Uint64>(std::chrono::duration_cast<std::chrono::microseconds>(elapsed).count()),
            requestSize,
            responseSize};
}

void CIMClient::Impl::EndOfTime::pass() const {
    if (deadline_.remaining() == http::Deadline::Clock::duration::zero()) {
        http::throwTimeOut(endpoint_, deadline_, "the answer was not read");
    }
}

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

/// Opens the connection that `make` makes; after a failure there is none.
template <typename Make>
void CIMClient::Impl::openConnection(Make make) {
    try {
        make();
        connection_->setLimits(limits_);
        connection_->setObserver(observer_);
        connection_->open(deadline());
        outOfMemory_ = String(connection_->endpoint().text() + ": " + kOutOfMemory);
    } catch (...) {
        connection_.reset();
        throw;
    }
}

void CIMClient::Impl::connect(const String& host, Uint32 port, const std::optional<SSLContext>& tls, const String& user,
                              const String& password) {
    if (connection_) {
        throw AlreadyConnectedException();
    }
    withinMemory([&] {
        openConnection([&] {
            connection_.emplace(http::Endpoint(textOf(host), port), tls,
                                http::Credentials{textOf(user), textOf(password)});
        });
    });
}

void CIMClient::Impl::connectLike(const Impl& other) {
    if (!other.connection_) {
        throw NotConnectedException();
    }
    withinMemory([&] {
        timeout = other.timeout;
        lenient = other.lenient;
        languages = other.languages;
        performanceHandler = other.performanceHandler;
        setQualifiedEmbedding(other.qualifiedEmbedding_);
        setDoubledProperties(other.doubledProperties_);
        setLimits(other.limits_);
        if (!connection_) {
            openConnection([&] { connection_.emplace(other.connection_->another()); });
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

void CIMClient::Impl::failOrderly(Answer& answer, const CIMException& error) {
    isReceiving_ = false;
    client::ServersError named(error, connection_->endpoint(), answer.method);
    named.setContentLanguages(answer.measurement.remarks.languages);
    report(answer.measurement); // whose handler may disconnect
    throw named;
}

void CIMClient::Impl::receive(const std::string& messageId, const char* method, const http::HttpRequest& request,
                              client::ReturnValueSink& sink) {
    Answer answer(*this, messageId, method, sink);
    during(answer, [&] { exchange(request, answer.decoder, answer.end, answer.endOfTime, answer.measurement); });
    end(answer);
}

void CIMClient::Impl::exchange(const http::HttpRequest& request, cimxml::ResponseDecoder& decoder,
                               const http::Deadline& end, const EndOfTime& endOfTime, Measurement& measurement) {
    begin(request, end, measurement);
    connection_->readBody([&](std::string_view part) { take(part, decoder, endOfTime, measurement); }, end);
    finish(decoder, measurement);
}

void CIMClient::Impl::begin(const http::HttpRequest& request, const http::Deadline& end, Measurement& measurement) {
    measurement.requestSize = request.body.size();
    const http::HttpHead& head = connection_->post(request, end);
    checkAnswer(head, end);
    client::addRemarks(head.fields, measurement.remarks);
}

bool CIMClient::Impl::readSome(Answer& answer) {
    return connection_->readSome(
        [&](std::string_view part) { take(part, answer.decoder, answer.endOfTime, answer.measurement); }, answer.end);
}

void CIMClient::Impl::take(std::string_view part, cimxml::ResponseDecoder& decoder, const EndOfTime& endOfTime,
                           Measurement& measurement) {
    endOfTime.pass();
    measurement.responseSize += part.size();
    decoder.feed(part);
}

void CIMClient::Impl::finish(cimxml::ResponseDecoder& decoder, Measurement& measurement) {
    const http::HttpFields& trailers = connection_->trailers();
    client::addRemarks(trailers, measurement.remarks);
    client::checkCimTrailers(trailers, connection_->endpoint());
    decoder.finish();
}

void CIMClient::Impl::end(Answer& answer) {
    isReceiving_ = false;
    lastAnswerBytes_ = answer.decoder.bytes();
    report(answer.measurement);
}

void CIMClient::Impl::abandon() noexcept {
    if (std::exchange(isReceiving_, false)) {
        connection_->abandon();
    }
}

void CIMClient::Impl::report(const Measurement& measurement) const {
    if (performanceHandler != nullptr) {
        performanceHandler->handleClientOpPerformanceData(measurement.data());
    }
}

http::Deadline CIMClient::Impl::deadline() const { return http::Deadline(std::chrono::milliseconds(timeout)); }

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
