#include "replay/ReplayListener.h"

#include "replay/RecordedBytes.h"
#include "replay/RequestMeaning.h"
#include "server/Acceptor.h"
#include "server/Connection.h"
#include "server/ConnectionThreads.h"
#include "server/ListenerLimits.h"
#include "server/Refusal.h"
#include "server/RequestReader.h"
#include "server/StopSignal.h"
#include "wire/CimError.h"
#include "wire/CimRequest.h"
#include "wire/PercentEncoding.h"

#include <exception>
#include <mutex>
#include <string_view>
#include <utility>

namespace demo {

namespace {

std::string ReadBody(RequestReader& reader) {
    std::string body;
    reader.ReadBody([&body](std::string_view part) { body += part; });
    return body;
}

std::string RefusalOf(const std::string& status, const std::string& cimError, const std::string& detail) {
    return "HTTP/1.1 " + status + "\r\nCIMError: " + cimError + "\r\nPGErrorDetail: " + PercentEncode(detail) +
           "\r\nContent-Length: 0\r\n\r\n";
}

void Fail(Connection& connection) {
    try {
        connection.Write("HTTP/1.1 500 Internal Server Error\r\nConnection: close\r\nContent-Length: 0\r\n\r\n");
    } catch (const ConnectionLost&) { // there is nobody to tell
    }
}

} // namespace

class ReplayListener::Implementation {
  public:
    Implementation(Recording& recording, OnUnknown onUnknown, const std::string& address, int port,
                   const TlsContext* tls)
        : recording_(recording),
          onUnknown_(std::move(onUnknown)),
          tls_(tls),
          url_((tls ? "https://" : "http://") + address + ':' + std::to_string(port)),
          threads_(limits_.connections, limits_.waitingConnections),
          acceptor_(address, port, stop_,
                    [this](int socket) { threads_.Enqueue([this, socket](auto made) { Serve(socket, made); }); }) {}

    ~Implementation() { stop_.Raise(); }

    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;

    const std::string& Url() const { return url_; }

  private:
    void Serve(int socket, ConnectionThreads::Clock::time_point made);
    void Converse(Connection& connection);
    bool AnswerNext(Connection& connection);
    bool Answer(Connection& connection, const std::string& body);
    std::string ReportUnknown(const CimRequest& request);

    Recording& recording_;
    const OnUnknown onUnknown_;
    const TlsContext* const tls_;
    const std::string url_;
    const ListenerLimits limits_;
    StopSignal stop_;
    std::mutex unknown_;
    ConnectionThreads threads_;
    Acceptor acceptor_;
};

void ReplayListener::Implementation::Serve(int socket, ConnectionThreads::Clock::time_point made) {
    Connection connection(socket, made, tls_ ? tls_->Get() : nullptr, limits_, stop_, threads_.Crowd());
    try {
        while (connection.WaitForRequest() && AnswerNext(connection)) {
        }
    } catch (const ConnectionLost&) { // there is nobody to tell
    } catch (const std::exception&) { // out of memory, mostly: the other clients are served on
        Fail(connection);
    }
}

/// Whether the connection goes on. What is not HTTP has no answer.
bool ReplayListener::Implementation::AnswerNext(Connection& connection) {
    try {
        RequestReader reader(connection);
        reader.ReadHead();
        return Answer(connection, ReadBody(reader)) && reader.KeepsConnection();
    } catch (const Refusal&) {
        return false;
    }
}

/// Whether the connection goes on.
bool ReplayListener::Implementation::Answer(Connection& connection, const std::string& body) {
    try {
        const CimRequest request = ReadRequest(body);
        const RecordedAnswer* const answer = recording_.Next(MeaningOf(request));
        connection.Write(answer == nullptr ? ReportUnknown(request) : BytesFor(*answer, request.messageId));
        return answer == nullptr || !EndsConnection(*answer);
    } catch (const HttpError& error) {
        connection.Write(RefusalOf("400 Bad Request", error.CimErrorValue(), error.what()));
        return true;
    }
}

std::string ReplayListener::Implementation::ReportUnknown(const CimRequest& request) {
    const std::string text = ShortTextOf(request);
    const std::lock_guard<std::mutex> lock(unknown_);
    onUnknown_(text);
    return RefusalOf("501 Not Implemented", "unsupported-operation", "not recorded: " + text);
}

ReplayListener::ReplayListener(Recording& recording, OnUnknown onUnknown, const std::string& address, int port,
                               const TlsContext* tls)
    : implementation_(std::make_unique<Implementation>(recording, std::move(onUnknown), address, port, tls)) {}

ReplayListener::~ReplayListener() = default;

std::string ReplayListener::Url() const { return implementation_->Url(); }

} // namespace demo
