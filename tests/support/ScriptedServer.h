#pragma once

#include "support/HttpRequest.h"
#include "support/LoopbackAddress.h"
#include "support/TestCertificate.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace support {

/// The versions of TLS that a server speaks.
enum class TlsVersion { kCurrent, kOnly10, kOnly11, kOnly12, kOnly13 };

/// How a server speaks TLS. Weak algorithms are good enough for it: it is for the client to refuse them.
struct TlsOptions {
    std::string certificateFile; ///< PEM: its certificate, and those that it sends with it
    std::string keyFile;         ///< PEM
    TlsVersion version = TlsVersion::kCurrent;
    std::string clientAuthorityFile; ///< PEM: requires certificates of this authority; empty: asks for none
};

/// What a TLS server may send of its own accord, between the bytes of the application.
enum class TlsMessage {
    kSessionTicket, ///< TLS 1.3
    kKeyUpdate,     ///< TLS 1.3; asks the peer for one, too
    kHelloRequest,  ///< TLS 1.2: the begin of a renegotiation
};

/// The server's end of one accepted connection, in the hands of a test's script. Used by the script's thread only.
class Connection {
  public:
    virtual ~Connection() = default;

    /// How many connections the server had accepted before this one.
    virtual std::size_t Index() const = 0;

    /// Whether the TLS handshake resumed a session of an earlier connection.
    virtual bool IsResumed() const = 0;

    /// Reads the next request, its body by Content-Length. Nothing when the peer closed or the server stops.
    virtual std::optional<HttpRequest> ReadRequest() = 0;

    /// Reads what is there, waiting for at least one byte. Empty when the peer closed or the server stops.
    virtual std::string ReadSome() = 0;

    /// Sends the bytes as they are. False when the peer is gone or the server stops.
    virtual bool Write(std::string_view bytes) = 0;

    /// Sends a message of the TLS protocol itself. False when it cannot be sent.
    virtual bool Send(TlsMessage message) = 0;

    /// Waits until all that was sent, the end of the stream included, has arrived at the peer's system, so that the
    /// peer finds it there at once.
    virtual void WaitForDelivery() = 0;

    /// Ends the connection in order (for TLS with its closing alert); the peer reads the end of the stream.
    virtual void Close() = 0;

    /// Ends the connection without TLS's closing alert.
    virtual void CloseWithoutAlert() = 0;

    /// Ends the connection with a TCP reset; the peer reads an error.
    virtual void Reset() = 0;

    /// Reads and drops everything until the peer closes or the server stops: how a script falls silent.
    virtual void WaitForPeerClose() = 0;
};

/// A TCP or TLS server that does to its peers whatever a test's script says. Each connection has a thread of its own
/// that runs the script; when the script returns the connection is closed. A connection whose TLS handshake fails is
/// counted but never reaches the script.
class ScriptedServer {
  public:
    using Script = std::function<void(Connection&)>;

    explicit ScriptedServer(Script script, std::string address = LoopbackAddress());
    /// Stops.
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    /// Listens on a port of the server's address (0: any free one) and returns the port. Several ports can be open at
    /// the same time. Throws std::system_error when the port cannot be had.
    std::uint16_t Listen(std::uint16_t port);
    std::uint16_t ListenTls(std::uint16_t port, const TestCertificate& certificate,
                            TlsVersion version = TlsVersion::kCurrent);
    std::uint16_t ListenTls(std::uint16_t port, const TlsOptions& options);

    /// Closes the listeners and all connections, then waits for the scripts, which all their calls' results tell to
    /// come to an end. What a script threw is thrown away.
    void Stop();

    const std::string& Address() const;
    std::size_t ConnectionCount() const;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace support
