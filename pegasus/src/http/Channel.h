#pragma once

#include "http/ConnectTime.h"
#include "http/Deadline.h"
#include "http/Endpoint.h"

#include <Pegasus/Common/SSLContext.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace Pegasus::http {

/// Thrown by a channel whose peer has closed or reset the connection. Never leaves the library.
struct ConnectionLost {
    std::string reason;
};

/// An open connection that carries bytes both ways, plain or encrypted. Each operation runs on the calling thread and
/// waits until it is done or the deadline passes; after an exception the channel cannot be used any further. With TLS,
/// write() and readSome() may throw SSLException, too: a server may refuse the client's certificate after the
/// handshake.
///
/// Its destruction closes this process's end of it and says nothing to the peer: in a child process it leaves the
/// connection of the parent as it was.
class Channel {
  public:
    /// Resolves the endpoint, connects to the first of its addresses that accepts and, given `tls`, shakes hands. Each
    /// of these is a step; so is each address that is tried. Throws InvalidLocatorException, CannotConnectException,
    /// SSLException or ConnectionTimeoutException.
    static std::unique_ptr<Channel> open(const Endpoint& endpoint, const SSLContext* tls, const ConnectTime& time);

    virtual ~Channel() = default;

    /// Sends all of `bytes`. Throws ConnectionLost or ConnectionTimeoutException.
    virtual void write(std::string_view bytes, const Deadline& deadline) = 0;

    /// Receives at least one byte and at most `size`; 0 is the end of the stream.
    /// Throws ConnectionLost or ConnectionTimeoutException.
    virtual std::size_t readSome(char* buffer, std::size_t size, const Deadline& deadline) = 0;

    /// Whether the peer has ended its side of the connection, perhaps after bytes that are not read yet.
    virtual bool isClosedByPeer() = 0;

    /// Whether there is anything to read, even if only the end of the stream.
    virtual bool hasInput() = 0;
};

} // namespace Pegasus::http
