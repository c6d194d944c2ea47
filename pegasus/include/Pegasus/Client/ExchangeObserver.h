#pragma once

#include <Pegasus/Common/String.h>

#include <chrono>
#include <string_view>

namespace Pegasus {
inline namespace bundled {

/// Sees what a client and its server send to each other, while they do. An extension, which other libraries of this API
/// do not have; see CIMClient::setExchangeObserver().
///
/// Heads and bodies are bytes as on the wire, before encryption. Credentials are left out: the values of the fields
/// Authorization, Proxy-Authorization, Cookie and Set-Cookie. The views are valid during the call.
///
/// The calls come in this order, on the thread of the operation: onConnecting() where a connection is opened; then for
/// each request onRequest(), onAnswerHead(), onAnswerBody() any number of times, onAnswerEnd(). Where the exchange
/// breaks off, onFailure() comes in place of the rest. One operation may take several requests, such as a second one
/// with credentials. An exception that a call throws ends the operation.
class ExchangeObserver {
  public:
    using Time = std::chrono::system_clock::time_point;

    virtual ~ExchangeObserver();

    /// `server` is host and port.
    virtual void onConnecting(const String& server, Boolean encrypted, Time time);
    /// Before the request is sent. The head ends with its empty line.
    virtual void onRequest(std::string_view head, std::string_view body, Time time) = 0;
    /// The head with its empty line, after any interim answers; where it is not valid HTTP, what has arrived.
    virtual void onAnswerHead(std::string_view head, Time time) = 0;
    /// The next bytes of the body, without the framing of chunks. The rest of the body of an answer that is refused is
    /// passed on, too, up to kRestBytes and for kRestMilliseconds.
    virtual void onAnswerBody(std::string_view part) = 0;
    /// The answer is complete. `trailers` are whole lines, usually none.
    virtual void onAnswerEnd(std::string_view trailers, Time time) = 0;
    /// A connection that cannot be opened, an answer that does not come or does not end.
    virtual void onFailure(const String& message, Time time) = 0;

    static constexpr Uint32 kRestBytes = Uint32{16} << 20U;
    static constexpr Uint32 kRestMilliseconds = 5000;
};

} // namespace bundled
} // namespace Pegasus
