#pragma once

#include <Pegasus/Client/PeerCertificate.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

#include <utility>

// What an exception means beyond its type. An exception with such a mark is of the documented type and of the mark's
// type, so that nobody needs to examine its message:
//
//     catch (const Pegasus::Exception& error) {
//         if (dynamic_cast<const Pegasus::ExceedsLimit*>(&error) != nullptr)

namespace Pegasus {
inline namespace bundled {

/// The answer passes a limit: one of this library's, one of the ClientLimits, or the available memory. On
/// CIMClientXmlException, CIMClientMalformedHTTPException and OutOfMemoryException.
class ExceedsLimit {
  public:
    virtual ~ExceedsLimit();
};

/// The server speaks TLS on a port that was connected to without it. On CIMClientMalformedHTTPException.
class PeerSpeaksTls {
  public:
    virtual ~PeerSpeaksTls();
};

/// There is no host of that name. On InvalidLocatorException.
class UnknownHost {
  public:
    virtual ~UnknownHost();
};

/// Nothing listens on the port: an address of the host has refused the connection, and no other has accepted it. On the
/// CannotConnectException of connect(), or of an operation that connects again.
class PortClosed {
  public:
    virtual ~PortClosed();
};

/// The server accepted the connection and closed it before it sent anything. On the CannotConnectException of an
/// operation.
class ClosedWithoutAnswer {
  public:
    virtual ~ClosedWithoutAnswer();
};

/// The server itself says that the operation has failed. On the CIMException of an operation.
class RefusedByServer {
  public:
    RefusedByServer(String server, String statement) : server_(std::move(server)), statement_(std::move(statement)) {}
    virtual ~RefusedByServer();

    /// Host and port, with a colon in between.
    const String& getServer() const noexcept { return server_; }
    /// The exception's message as it is without naming the server and the operation.
    const String& getStatement() const noexcept { return statement_; }

  private:
    String server_;
    String statement_;
};

/// A text is no object path. On the MalformedObjectNameException of that text.
class MalformedPath {
  public:
    /// What should stand at the position.
    enum Expected {
        NAMESPACE, ///< before the position, which is that of a colon
        CLASS_NAME,
        KEYS, ///< a point, or an equals sign, and what follows it
        KEY_NAME,
        EQUALS_SIGN,
        VALUE, ///< a text in double quotes, a number, true or false
        CLOSING_QUOTE,
        COMMA_OR_END,
        END
    };

    MalformedPath(Expected expected, Uint32 position) : expected_(expected), position_(position) {}
    virtual ~MalformedPath();

    Expected getExpected() const noexcept { return expected_; }
    /// In the text, in bytes of UTF-8; at most the size of the text.
    Uint32 getPosition() const noexcept { return position_; }

  private:
    Expected expected_;
    Uint32 position_;
};

/// A certificate of the server was refused. On the SSLException of connect(), or of an operation that connects again.
class CertificateRefused {
  public:
    enum Reason {
        EXPIRED,
        NOT_YET_VALID,
        UNKNOWN_ISSUER,    ///< no authority that is trusted has signed it, or one in between is missing
        SELF_SIGNED,       ///< it, or the last of its chain, has signed itself and is not trusted
        WRONG_NAME,        ///< it is for other hosts
        OTHER_FINGERPRINT, ///< it is not the one that the SSLContext asks for
        UNSUITABLE,        ///< its key or signature is weak, it is not meant for servers, or an authority in its chain
                           ///< is not meant to sign it
        OTHER              ///< the callback refused it, or the exception's message says what else is wrong
    };

    CertificateRefused(Reason reason, PeerCertificate certificate)
        : reason_(reason), certificate_(std::move(certificate)) {}
    virtual ~CertificateRefused();

    Reason getReason() const noexcept { return reason_; }
    /// The one at fault: the server's own, or one of its chain.
    const PeerCertificate& getCertificate() const noexcept { return certificate_; }

  private:
    Reason reason_;
    PeerCertificate certificate_;
};

} // namespace bundled
} // namespace Pegasus
