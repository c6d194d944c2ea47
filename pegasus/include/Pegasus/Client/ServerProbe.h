#pragma once

#include <Pegasus/Client/PeerCertificate.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

/// What a TLS handshake shows of a server. Whom the certificate belongs to is not verified.
struct TlsProbe {
    String version; ///< `TLSv1.3`
    String cipher;
    Boolean showsCertificate = false;
    PeerCertificate certificate; ///< the server's own
    Boolean isSelfSigned = false;
    Boolean asksForCertificate = false; ///< the server wants to see one of the client's
    String failure;                     ///< what ended the handshake too early; empty otherwise
};

/// What connecting to a server shows of it, below HTTP and CIM. It is for programs that tell people what they connect
/// to, and why a server cannot be reached; a client needs nothing of it.
struct ServerProbe {
    /// How far a probe goes. Each step needs those before it.
    enum Depth { NAME, PORT, TLS };

    enum Result {
        REACHED,      ///< as far as asked; for TLS, see TlsProbe::failure
        UNKNOWN_HOST, ///< there is no host of that name
        UNRESOLVED,   ///< the name cannot be looked up now
        REFUSED,      ///< nothing listens on the port
        SILENT,       ///< no address of the host has answered
        NO_SOCKET     ///< this process has no file descriptor left
    };

    Result result = REACHED;
    String reason;           ///< a sentence for people; empty when the server was reached
    Array<String> addresses; ///< of the host, in the order of the system
    Uint64 connectTime = 0;  ///< in microseconds
    Uint64 handshakeTime = 0;
    TlsProbe tls;

    /// Looks up the host, connects to the first of its addresses that accepts, and shakes hands. Connecting takes no
    /// longer than `milliseconds`, the handshake neither; looking up has ClientLimits::kConnectMilliseconds. Throws
    /// nothing but for want of memory.
    static ServerProbe of(const String& host, Uint32 port, Depth depth, Uint32 milliseconds);
};

} // namespace Pegasus
