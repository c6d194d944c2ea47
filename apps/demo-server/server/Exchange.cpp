#include "server/Exchange.h"

#include "server/OperationRequest.h"
#include "server/OperationResponder.h"
#include "wire/PercentEncoding.h"

#include <chrono>
#include <exception>
#include <string_view>
#include <utility>

namespace demo {

namespace http = boost::beast::http;

namespace {

constexpr std::string_view kPath = "/cimom";
constexpr unsigned kVersion11 = 11;

/// Refuses what is no request for an operation, before its body is read.
void CheckHead(const RequestHead& head) {
    if (!IsKnownMethod(head)) {
        throw Refusal(http::status::not_implemented); // such as the M-POST of DSP0200
    }
    if (PathOf(head) != kPath) {
        throw Refusal(http::status::not_found);
    }
    if (head.method() != http::verb::post) {
        throw Refusal(http::status::method_not_allowed, http::field::allow, "POST");
    }
    if (!IsXml(head)) {
        throw Refusal(http::status::unsupported_media_type);
    }
}

ResponseWriter::Whole ResponseOf(http::status status) { return {status, kVersion11}; }

} // namespace

Exchange::Exchange(ListenerState& state, Connection& connection, std::string client)
    : state_(state), connection_(connection), reader_(connection), writer_(connection) {
    record_.client = std::move(client);
    record_.begin = std::chrono::system_clock::now();
}

bool Exchange::Run() {
    const auto begin = std::chrono::steady_clock::now();
    const auto writtenBefore = connection_.WrittenBytes();
    const bool isAnswered = IsAnswered();
    record_.httpStatus = writer_.Status();
    record_.bytes = connection_.WrittenBytes() - writtenBefore;
    record_.duration = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);
    if (state_.log) {
        state_.log->Write(record_);
    }
    return isAnswered && !writer_.EndsConnection();
}

/// False when the connection is lost before.
bool Exchange::IsAnswered() {
    try {
        Answer();
        writer_.Flush();
        return true;
    } catch (const ConnectionLost&) {
        return false;
    }
}

void Exchange::Answer() {
    try {
        CarryOut();
    } catch (const ConnectionLost&) {
        throw;
    } catch (const Refusal& refusal) {
        Refuse(refusal);
    } catch (const HttpError& error) {
        Refuse(error);
    } catch (const std::exception&) { // out of memory, mostly: the other clients are served on
        Refuse(Refusal(http::status::internal_server_error));
    }
}

void Exchange::CarryOut() {
    const RequestHead& head = reader_.ReadHead();
    CheckHead(head);
    const CimRequest operation = ReadOperation(head);
    record_.operation = operation.method;
    record_.object = operation.ObjectName();
    DecideWhetherConnectionEnds();
    OperationResponder(state_, writer_, record_, head).Respond(operation);
}

CimRequest Exchange::ReadOperation(const RequestHead& head) {
    const std::string body = ReadBody();
    record_.user = state_.logins.Admit(record_.client, HeaderOf(head, "Authorization"));
    return demo::ReadOperation(head, body);
}

std::string Exchange::ReadBody() {
    std::string body;
    reader_.ReadBody([&](std::string_view part) {
        if (body.size() + part.size() > ListenerLimits::kSmallRequest && !place_) {
            place_ = state_.largeRequests.Take(state_.limits.placeTimeout);
            if (!place_) {
                throw Refusal::PutOff(http::status::service_unavailable, state_.limits.placeTimeout);
            }
        }
        body += part;
    });
    return body;
}

void Exchange::Refuse(const Refusal& refusal) {
    if (writer_.Status() != 0) { // an answer that has begun can only break off
        writer_.EndConnection();
        return;
    }
    auto answer = ResponseOf(refusal.HttpStatus());
    if (refusal.HeaderField() != http::field::unknown) {
        answer.set(refusal.HeaderField(), refusal.HeaderValue());
    }
    Write(std::move(answer));
}

void Exchange::Refuse(const HttpError& error) {
    auto answer = ResponseOf(static_cast<http::status>(error.HttpStatus()));
    answer.set("CIMError", error.CimErrorValue());
    answer.set("PGErrorDetail", PercentEncode(error.what()));
    Write(std::move(answer));
}

void Exchange::Write(ResponseWriter::Whole answer) {
    DecideWhetherConnectionEnds();
    writer_.Write(std::move(answer));
}

/// It ends where the rest of the request is not read.
void Exchange::DecideWhetherConnectionEnds() {
    if (!reader_.KeepsConnection() || state_.stop.IsRaised()) {
        writer_.EndConnection();
    }
}

} // namespace demo
