#include "http/TlsTransport.h"

#include "http/SystemError.h"
#include "http/TcpChannel.h"
#include "tls/SocketBio.h"
#include "tls/TlsContext.h"

#include <Pegasus/Common/Exception.h>
#include <exception>
#include <memory>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <optional>
#include <poll.h>
#include <string>
#include <string_view>

namespace Pegasus::http {

namespace {

struct SessionFree {
    void operator()(SSL* session) const { SSL_free(session); }
};

/// A TCP connection with TLS on top. It is never ended with TLS's closing alert: a child process that drops its copy
/// would end the session of its parent, and for HTTP the alert adds nothing to what the answers say of their ends.
class TlsChannel : public TcpChannel {
  public:
    TlsChannel(const Endpoint& endpoint, const SSLContext& settings, SSL_CTX& context, const ConnectTime& time)
        : TcpChannel(endpoint, time),
          wire_(socket().number()),
          check_(settings, this->endpoint()),
          session_(SSL_new(&context)) {
        if (!session_ || !wire_.attachTo(*session_)) {
            ERR_clear_error();
            throw SSLException(String(this->endpoint().text() + ": no memory for TLS"));
        }
        check_.attachTo(*session_);
    }

    void shakeHands(const Deadline& deadline) {
        try {
            await(deadline, "the TLS handshake was not complete", [&] {
                const std::optional<Progress> progress = attempt([&] { return SSL_connect(session_.get()); });
                return progress ? *progress : throw ConnectionLost{reason()};
            });
        } catch (const ConnectionLost& lost) {
            failHandshake(lost.reason);
        }
    }

    bool hasInput() override { return SSL_has_pending(session_.get()) == 1 || TcpChannel::hasInput(); }

  protected:
    Progress sendSome(std::string_view bytes) override {
        std::size_t sent = 0;
        const std::optional<Progress> progress =
            attempt([&] { return SSL_write_ex(session_.get(), bytes.data(), bytes.size(), &sent); });
        if (!progress) {
            throw ConnectionLost{reason()};
        }
        return {sent, progress->awaited};
    }

    /// Many servers close without TLS's closing alert. That is no risk here: an answer that is delimited by its end
    /// is a document, and a document tells by itself whether it is complete.
    Progress receiveSome(char* buffer, std::size_t size) override {
        std::size_t received = 0;
        const std::optional<Progress> progress =
            attempt([&] { return SSL_read_ex(session_.get(), buffer, size, &received); });
        if (!progress && !hasEnded_) {
            throw ConnectionLost{reason()};
        }
        return {received, progress ? progress->awaited : short{0}};
    }

  private:
    /// Calls a function of OpenSSL. Nothing when the session has ended or is broken: see hasEnded_ and reason().
    template <typename Call>
    std::optional<Progress> attempt(Call call) {
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

    std::string reason() const {
        if (error_ != 0) {
            const char* const text = ERR_reason_error_string(error_);
            return text != nullptr ? text : "unknown error";
        }
        return wire_.error() != 0 ? systemError(wire_.error()) : "the server closed the connection";
    }

    [[noreturn]] void failHandshake(const std::string& what) const {
        if (check_.failure()) {
            std::rethrow_exception(check_.failure());
        }
        if (!check_.refusal().empty()) {
            fail("the server's certificate was refused: " + check_.refusal());
        }
        const bool isPlain = ERR_GET_REASON(error_) == SSL_R_WRONG_VERSION_NUMBER;
        fail("the TLS handshake failed: " + what +
             (isPlain ? " (the server does not seem to speak TLS on this port)" : ""));
    }

    [[noreturn]] void fail(const std::string& what) const {
        throw SSLException(String(endpoint().text() + ": " + what));
    }

    SocketBio wire_;
    PeerCheck check_;
    const std::unique_ptr<SSL, SessionFree> session_;
    bool hasEnded_ = false;   // the server has closed it, with or without TLS's alert
    unsigned long error_ = 0; // of OpenSSL, where it was OpenSSL that failed
};

class OpenSslTransport : public TlsTransport {
  public:
    std::unique_ptr<Channel> open(const Endpoint& endpoint, const SSLContext& settings,
                                  const ConnectTime& time) const override {
        const TlsContextPtr context = makeTlsContext(settings); // sessions keep it alive
        auto channel = std::make_unique<TlsChannel>(endpoint, settings, *context, time);
        channel->shakeHands(time.ofStep());
        return channel;
    }
};

} // namespace

} // namespace Pegasus::http

extern "C" const Pegasus::http::TlsTransport* PegasusTlsTransport() {
    static const Pegasus::http::OpenSslTransport transport;
    return &transport;
}
