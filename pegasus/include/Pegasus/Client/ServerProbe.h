#pragma once

#include <Pegasus/Client/PeerCertificate.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {
inline namespace bundled {

/// What a TLS handshake shows of a server. The certificate is not verified.
struct TlsProbe {
    String version; ///< `TLSv1.3`
    String cipher;
    Boolean showsCertificate = false;
    PeerCertificate certificate; ///< the server's own
    Boolean isSelfSigned = false;
    Boolean asksForCertificate = false; ///< the server wants to see one of the client's
    String failure;                     ///< why the handshake failed; empty when it did not
};

/// What connecting to a server shows of it, below HTTP and CIM: for programs that tell people what they connect to, and
/// why a server cannot be reached. A CIMClient does not need it.
struct ServerProbe {
    /// How far a probe goes. Each step needs those before it.
    enum Depth { NAME, PORT, TLS };

    enum Result {
        REACHED,      ///< as far as asked; for TLS, see TlsProbe::failure
        UNKNOWN_HOST, ///< there is no host of that name
        UNRESOLVED,   ///< the name cannot be looked up now, or the port is none
        REFUSED,      ///< nothing listens on the port
        SILENT,       ///< no address of the host has answered
        NO_SOCKET     ///< this process has no file descriptor left
    };

    Result result = REACHED;
    String reason;           ///< a sentence for people; empty when the server was reached
    Array<String> addresses; ///< of the host, in the order of the system
    Uint64 connectTime = 0;  ///< of connecting, in microseconds
    Uint64 handshakeTime = 0;
    TlsProbe tls;

    /// Looks up the host, connects to the first of its addresses that accepts, and shakes hands. Connecting takes no
    /// longer than `milliseconds`, and neither does the handshake; looking up is limited to
    /// ClientLimits::kConnectMilliseconds. Throws only when memory runs out.
    static ServerProbe of(const String& host, Uint32 port, Depth depth, Uint32 milliseconds);
};

} // namespace bundled
} // namespace Pegasus
