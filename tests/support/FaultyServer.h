#pragma once

#include "support/LoopbackAddress.h"
#include "support/ScriptedServer.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace support {

/// What becomes of an answer on its way to the client: gets the client's connection and the bytes of the right answer,
/// and sends what it likes. The connection is closed when it returns.
using Fault = std::function<void(Connection& client, const std::string& answer)>;

namespace faults {

/// The first bytes of the answer, and then the end of the connection: in order, by a reset, or never.
Fault TruncatedAt(std::size_t bytes);
Fault ResetAt(std::size_t bytes);
Fault StalledAt(std::size_t bytes);

/// The whole answer, late.
Fault Delayed(std::chrono::milliseconds time);

/// The whole answer, one byte at a time with a pause after each.
Fault Dripped(std::chrono::milliseconds pause);

/// The answer twice, and the connection left open.
Fault Doubled();

/// The answer with a byte turned into another one.
Fault GarbledAt(std::size_t byte);

/// The answer with another Content-Length, which it must have; the connection is left open.
Fault WithLengthOffBy(int bytes);

/// The answer to another message.
Fault WithMessageId(const std::string& id);

/// The answer up to the first occurrence of a text, and then this text again and again until the client closes.
Fault Endless(const std::string& text);

} // namespace faults

/// Stands between a client and a CIM server, has the server answer each request over a connection of its own, and hands
/// the answer to a fault. Both sides speak plain HTTP.
class FaultyServer {
  public:
    /// The server is at a port of an address.
    FaultyServer(std::string serverAddress, std::uint16_t serverPort, Fault fault);

    /// See ScriptedServer.
    std::uint16_t Listen(std::uint16_t port) { return server_.Listen(port); }
    const std::string& Address() const { return server_.Address(); }
    std::size_t ConnectionCount() const { return server_.ConnectionCount(); }

    /// The server's answer to a request, as it is.
    static std::string Ask(const std::string& serverAddress, std::uint16_t serverPort, const HttpRequest& request);

  private:
    ScriptedServer server_;
};

} // namespace support
