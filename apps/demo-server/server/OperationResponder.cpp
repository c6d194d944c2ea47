#include "server/OperationResponder.h"

#include "server/Refusal.h"
#include "wire/CimError.h"
#include "wire/PercentEncoding.h"

#include <boost/beast/http/field.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace demo {

namespace http = boost::beast::http;

namespace {

constexpr unsigned kVersion11 = 11;

template <typename Response>
Response MethodResponse() {
    Response response(http::status::ok, kVersion11);
    response.set("CIMOperation", "MethodResponse");
    response.set(http::field::content_type, "application/xml; charset=utf-8");
    return response;
}

/// For the log.
std::string StatusOf(const std::optional<CimError>& error) { return error ? error->Code() : "0"; }

ResponseWriter::Trailers TrailersFor(const std::optional<CimError>& error) {
    ResponseWriter::Trailers trailers;
    if (error) {
        trailers.set("CIMStatusCode", error->Code());
        trailers.set("CIMStatusCodeDescription", PercentEncode(error->what()));
    }
    return trailers;
}

} // namespace

void OperationResponder::Respond(const CimRequest& operation) {
    if (TakesTrailers(head_)) {
        WriteChunks(operation, true);
    } else if (state_.service.IsOnce(operation)) {
        RespondOnce(operation);
    } else {
        RespondWhole(operation);
    }
}

/// Sends the whole answer of an operation that cannot be executed again: it gets its place before it begins, and limits
/// its length itself.
void OperationResponder::RespondOnce(const CimRequest& operation) {
    if (!TakePlace(state_.limits.placeTimeout)) {
        throw Refusal::PutOff(http::status::service_unavailable, state_.limits.placeTimeout);
    }
    WriteWhole(*Answer(state_.service, operation));
}

/// Sends the answer as a whole, unless it is too long for that.
void OperationResponder::RespondWhole(const CimRequest& operation) {
    const bool takesChunks = TakesChunks(head_);
    const auto timeout = takesChunks ? std::chrono::milliseconds(0) : state_.limits.placeTimeout;
    auto answer = Answer(state_.service, operation, [&](std::size_t size) { return MayHold(size, timeout); });
    if (answer) {
        WriteWhole(std::move(*answer));
    } else if (takesChunks) {
        WriteChunks(operation, false);
    } else if (place_) {
        // HTTP/1.0 cannot tell a whole answer of unknown length from a part.
        throw Refusal(http::status::http_version_not_supported);
    } else {
        throw Refusal::PutOff(http::status::service_unavailable, state_.limits.placeTimeout);
    }
}

void OperationResponder::WriteWhole(WholeAnswer answer) {
    record_.cimStatus = StatusOf(answer.error);
    auto response = MethodResponse<ResponseWriter::Whole>();
    response.body() = std::move(answer.text);
    writer_.Write(std::move(response));
}

void OperationResponder::WriteChunks(const CimRequest& operation, bool withTrailers) {
    auto head = MethodResponse<ResponseWriter::Head>();
    if (withTrailers) {
        head.set(http::field::trailer, "CIMStatusCode, CIMStatusCodeDescription");
    }
    writer_.WriteHead(std::move(head));
    const auto error =
        StreamAnswer(state_.service, operation, [this](std::string_view text) { writer_.WriteChunk(text); });
    record_.cimStatus = StatusOf(error);
    if (error && !withTrailers) {
        writer_.EndConnection(); // a body that breaks off is the only way to tell
    } else {
        writer_.WriteLastChunk(TrailersFor(error));
    }
}

bool OperationResponder::TakePlace(std::chrono::milliseconds timeout) {
    if (!place_) {
        place_ = state_.longAnswers.Take(timeout);
    }
    return place_ != nullptr;
}

/// Whether there is memory for an answer of that length.
bool OperationResponder::MayHold(std::size_t answerBytes, std::chrono::milliseconds timeout) {
    return answerBytes <= ListenerLimits::kShortAnswer ||
           (TakePlace(timeout) && answerBytes <= ListenerLimits::kLongAnswer);
}

} // namespace demo
