#include "tls/TlsChannel.h"

#include "errors/Marked.h"
#include "http/SystemError.h"
#include "tls/CertificateFacts.h"
#include "tls/OpenSslErrors.h"

#include <Pegasus/Common/Exception.h>

#include <openssl/err.h>

#include <poll.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace Pegasus::tls {

using http::ConnectionLost;
using http::ConnectTime;
using http::Deadline;
using http::Descriptor;
using http::Endpoint;
using http::systemError;
using http::TcpChannel;

namespace {

/// Alerts by which a server that has asked for a certificate refuses what it got, as OpenSSL's reasons.
constexpr int kCertificateAlerts[] = {SSL_R_SSLV3_ALERT_HANDSHAKE_FAILURE,
                                      SSL_R_SSLV3_ALERT_BAD_CERTIFICATE,
                                      SSL_R_SSLV3_ALERT_UNSUPPORTED_CERTIFICATE,
                                      SSL_R_SSLV3_ALERT_CERTIFICATE_REVOKED,
                                      SSL_R_SSLV3_ALERT_CERTIFICATE_EXPIRED,
                                      SSL_R_SSLV3_ALERT_CERTIFICATE_UNKNOWN,
                                      SSL_R_TLSV1_ALERT_UNKNOWN_CA,
                                      SSL_R_TLSV1_ALERT_ACCESS_DENIED,
                                      SSL_R_TLSV1_ALERT_DECRYPT_ERROR,
                                      SSL_R_TLSV13_ALERT_CERTIFICATE_REQUIRED};

} // namespace

TlsChannel::TlsChannel(const Endpoint& endpoint, std::shared_ptr<TlsContext> context, const ConnectTime& time)
    : TcpChannel(endpoint, time),
      context_(std::move(context)),
      wire_(socket().number()),
      check_(context_->settings(), context_->fingerprint(), this->endpoint()),
      session_(SSL_new(&context_->openSsl())) {
    setUp();
}

TlsChannel::TlsChannel(const Endpoint& endpoint, std::shared_ptr<TlsContext> context, Descriptor socket)
    : TcpChannel(endpoint, std::move(socket)),
      context_(std::move(context)),
      wire_(this->socket().number()),
      check_(context_->settings(), context_->fingerprint(), this->endpoint()),
      session_(SSL_new(&context_->openSsl())) {
    setUp();
}

void TlsChannel::setUp() {
    if (!session_ || !wire_.attachTo(*session_)) {
        ERR_clear_error();
        throw SSLException(String(this->endpoint().text() + ": no memory for TLS"));
    }
    check_.attachTo(*session_);
    SSL_set_cert_cb(session_.get(), &TlsChannel::onCertificateRequest, &isAskedForCertificate_);
    attachSessions();
}

/// OpenSSL would treat a session that ends without the closing alert as broken, and not resume it.
void TlsChannel::freeSession(SSL* session) {
    SSL_set_shutdown(session, SSL_SENT_SHUTDOWN | SSL_RECEIVED_SHUTDOWN);
    SSL_free(session);
}

/// The server wants a certificate. 1 goes on with what there is.
int TlsChannel::onCertificateRequest(SSL* /*session*/, void* isAsked) {
    *static_cast<bool*>(isAsked) = true;
    return 1;
}

/// With a callback no session is resumed: the callback is asked about each connection, and a resumed session has no
/// certificate to show it.
void TlsChannel::attachSessions() {
    if (context_->settings().getSSLCertificateVerifyFunction() == nullptr) {
        context_->sessions().attachTo(*session_);
    }
}

void TlsChannel::shakeHands(const Deadline& deadline) {
    try {
        await(deadline, "the TLS handshake was not complete", [&] {
            const std::optional<Progress> progress = attempt([&] { return SSL_connect(session_.get()); });
            return progress ? *progress : throw ConnectionLost{reason()};
        });
    } catch (const ConnectionLost& lost) {
        context_->sessions().forget();
        lost_ = lost.reason;
        failHandshake(lost_);
    }
    context_->sessions().noteHandshake(*session_);
}

TlsProbe TlsChannel::shown() const {
    TlsProbe shown;
    shown.asksForCertificate = isAskedForCertificate_;
    shown.version = String(SSL_get_version(session_.get()));
    const char* const cipher = SSL_get_cipher_name(session_.get());
    shown.cipher = String(cipher != nullptr ? cipher : "");
    if (const CertificatePtr certificate{SSL_get1_peer_certificate(session_.get())}) {
        shown.showsCertificate = true;
        shown.certificate = factsOf(*certificate);
        shown.isSelfSigned = X509_self_signed(certificate.get(), 0) == 1;
    }
    return shown;
}

bool TlsChannel::hasInput() { return SSL_has_pending(session_.get()) == 1 || TcpChannel::hasInput(); }

TcpChannel::Progress TlsChannel::sendSome(std::string_view bytes) {
    std::size_t sent = 0;
    const std::optional<Progress> progress =
        attempt([&] { return SSL_write_ex(session_.get(), bytes.data(), bytes.size(), &sent); });
    if (!progress) {
        failConversation();
    }
    return {sent, progress->awaited};
}

/// Many servers close without TLS's closing alert. That is no risk here: an answer that is delimited by its end is a
/// document, and a document tells by itself whether it is complete.
TcpChannel::Progress TlsChannel::receiveSome(char* buffer, std::size_t size) {
    std::size_t received = 0;
    const std::optional<Progress> progress =
        attempt([&] { return SSL_read_ex(session_.get(), buffer, size, &received); });
    if (!progress && !hasEnded_) {
        failConversation();
    }
    return {received, progress ? progress->awaited : short{0}};
}

/// Calls a function of OpenSSL. Nothing when the session has ended or is broken: see hasEnded_ and reason().
template <typename Call>
std::optional<TcpChannel::Progress> TlsChannel::attempt(Call call) {
    ERR_clear_error(); // what others left in this thread would be taken for this call's
    const int result = call();
    const int error = SSL_get_error(session_.get(), result);
    switch (error) {
    case SSL_ERROR_NONE:
        return Progress{0, 0};
    case SSL_ERROR_WANT_READ:
        return Progress{0, POLLIN};
    case SSL_ERROR_WANT_WRITE:
        return Progress{0, POLLOUT};
    default:
        hasEnded_ = error == SSL_ERROR_ZERO_RETURN || (error == SSL_ERROR_SYSCALL && wire_.hasEnded());
        error_ = ERR_get_error();
        ERR_clear_error();
        return std::nullopt;
    }
}

bool TlsChannel::refusesClientCertificate() const {
    const int alert = ERR_GET_LIB(error_) == ERR_LIB_SSL ? ERR_GET_REASON(error_) : 0;
    return isAskedForCertificate_ && std::find(std::begin(kCertificateAlerts), std::end(kCertificateAlerts), alert) !=
                                         std::end(kCertificateAlerts);
}

std::string TlsChannel::reason() const {
    if (!lost_.empty()) {
        return lost_;
    }
    if (error_ != 0) {
        return openSslText(error_);
    }
    return wire_.error() != 0 ? systemError(wire_.error()) : "the server closed the connection";
}

void TlsChannel::failHandshake(const std::string& what) const {
    if (check_.failure()) {
        std::rethrow_exception(check_.failure());
    }
    if (const auto& refusal = check_.refusal()) {
        throw errors::Marked<SSLException, CertificateRefused>(
            String(endpoint().text() + ": the server's certificate was refused: " + refusal->text), refusal->mark);
    }
    if (refusesClientCertificate()) {
        failForClientCertificate();
    }
    const bool isPlain = ERR_GET_REASON(error_) == SSL_R_WRONG_VERSION_NUMBER;
    fail("the TLS handshake failed: " + what +
         (isPlain ? " (the server does not seem to speak TLS on this port)" : ""));
}

void TlsChannel::failConversation() const {
    if (refusesClientCertificate()) {
        failForClientCertificate();
    }
    throw ConnectionLost{reason()};
}

void TlsChannel::failForClientCertificate() const {
    const std::string own(context_->settings().getCertPath().view());
    fail("the server wants a certificate of the client's" + (own.empty() ? "" : ", and does not take that of " + own) +
         " (" + reason() + ")");
}

void TlsChannel::fail(const std::string& what) const { throw SSLException(String(endpoint().text() + ": " + what)); }

} // namespace Pegasus::tls
