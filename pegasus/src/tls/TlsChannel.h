#pragma once

#include "http/TcpChannel.h"
#include "tls/OpenSslObjects.h"
#include "tls/PeerCheck.h"
#include "tls/SocketBio.h"
#include "tls/TlsContext.h"

#include <Pegasus/Client/ServerProbe.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace Pegasus::tls {

/// A TCP connection with TLS on top. It is never ended with TLS's closing alert: a child process that drops its copy
/// would end the session of its parent, and for HTTP the alert adds nothing to what the answers say of their ends.
class TlsChannel : public http::TcpChannel {
  public:
    /// Connects. Throws like TcpChannel, and SSLException.
    TlsChannel(const http::Endpoint& endpoint, std::shared_ptr<TlsContext> context, const http::ConnectTime& time);

    /// Takes a connected socket that does not block. Throws SSLException.
    TlsChannel(const http::Endpoint& endpoint, std::shared_ptr<TlsContext> context, http::Descriptor socket);

    /// To be called once, before anything else. Throws SSLException or ConnectionTimeoutException.
    void shakeHands(const http::Deadline& deadline);

    bool hasInput() override;

    /// What the handshake has shown, even if it failed.
    TlsProbe shown() const;

    /// Why the newest operation has failed, in few words.
    std::string reason() const;

  protected:
    // In TLS 1.3 a server says only after the handshake that it does not take the client's certificate: these throw
    // SSLException, too.
    Progress sendSome(std::string_view bytes) override;
    Progress receiveSome(char* buffer, std::size_t size) override;

  private:
    static void freeSession(SSL* session);
    static int onCertificateRequest(SSL* session, void* isAsked);

    void setUp();
    template <typename Call>
    std::optional<Progress> attempt(Call call);
    void attachSessions();
    bool refusesClientCertificate() const;
    [[noreturn]] void failHandshake(const std::string& what) const;
    [[noreturn]] void failConversation() const;
    [[noreturn]] void failForClientCertificate() const;
    [[noreturn]] void fail(const std::string& what) const;

    const std::shared_ptr<TlsContext> context_;
    SocketBio wire_;
    PeerCheck check_;
    const std::unique_ptr<SSL, Freeing<&TlsChannel::freeSession>> session_;
    bool isAskedForCertificate_ = false;
    bool hasEnded_ = false;   // the server has closed it, with or without TLS's alert
    unsigned long error_ = 0; // of OpenSSL, where it was OpenSSL that failed
    std::string lost_;        // why the handshake ended, if it failed
};

} // namespace Pegasus::tls
