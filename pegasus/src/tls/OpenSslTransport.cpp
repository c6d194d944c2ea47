#include "http/TlsTransport.h"

#include "http/TcpChannel.h"
#include "tls/TlsContext.h"

#include <Pegasus/Common/Exception.h>
#include <boost/asio/ssl.hpp>
#include <exception>
#include <string>

namespace Pegasus::http {

namespace {

namespace asio = boost::asio;

/// A TCP connection with TLS on top.
class TlsChannel : public TcpChannel {
  public:
    TlsChannel(const Endpoint& endpoint, const SSLContext& settings)
        : TcpChannel(endpoint),
          settings_(settings),
          context_(makeTlsContext(settings).release()),
          stream_(socket(), context_),
          check_(settings_, this->endpoint()) {}

    void shakeHands(const Deadline& deadline) {
        check_.attachTo(*stream_.native_handle());
        const auto result =
            await(deadline, [&](auto handler) { stream_.async_handshake(asio::ssl::stream_base::client, handler); });
        if (check_.callbackFailure()) {
            std::rethrow_exception(check_.callbackFailure());
        }
        if (!result) {
            throwTimeOut(endpoint(), deadline, "the TLS handshake was not complete");
        }
        if (!check_.refusal().empty()) {
            fail("the server's certificate was refused: " + check_.refusal());
        }
        if (*result) {
            fail("the TLS handshake failed: " + reason(*result));
        }
    }

    void write(std::string_view bytes, const Deadline& deadline) override { writeTo(stream_, bytes, deadline); }

    std::size_t readSome(char* buffer, std::size_t size, const Deadline& deadline) override {
        return readFrom(stream_, buffer, size, deadline);
    }

    bool hasInput() override {
        SSL* const session = stream_.native_handle();
        const bool buffered = SSL_has_pending(session) == 1 || BIO_pending(SSL_get_rbio(session)) > 0;
        return buffered || TcpChannel::hasInput();
    }

  protected:
    /// Many servers close without TLS's closing alert. That is no risk here: an answer that is delimited by its end
    /// is a document, and a document tells by itself whether it is complete.
    bool isEnd(const Error& error) const override {
        return TcpChannel::isEnd(error) || error == asio::ssl::error::stream_truncated;
    }

  private:
    [[noreturn]] void fail(const std::string& what) const {
        throw SSLException(String(endpoint().text() + ": " + what));
    }

    std::string reason(const Error& error) const {
        if (error.category() == asio::error::get_ssl_category()) {
            const auto code = static_cast<unsigned long>(error.value());
            const char* text = ERR_reason_error_string(code);
            const std::string plain = ERR_GET_REASON(code) == SSL_R_WRONG_VERSION_NUMBER
                                          ? " (the server does not seem to speak TLS on this port)"
                                          : "";
            return (text != nullptr ? text : error.message()) + plain;
        }
        return isEnd(error) ? "the server closed the connection" : error.message();
    }

    const SSLContext settings_;
    asio::ssl::context context_;
    asio::ssl::stream<Socket&> stream_;
    PeerCheck check_;
};

class OpenSslTransport : public TlsTransport {
  public:
    std::unique_ptr<Channel> open(const Endpoint& endpoint, const SSLContext& settings,
                                  const Deadline& deadline) const override {
        auto channel = std::make_unique<TlsChannel>(endpoint, settings);
        channel->connect(deadline);
        channel->shakeHands(deadline);
        return channel;
    }
};

} // namespace

} // namespace Pegasus::http

extern "C" const Pegasus::http::TlsTransport* PegasusTlsTransport() {
    static const Pegasus::http::OpenSslTransport transport;
    return &transport;
}
