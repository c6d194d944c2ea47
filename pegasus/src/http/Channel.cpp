#include "http/Channel.h"

#include "http/HostLookup.h"
#include "http/TimeOut.h"
#include "http/TlsContext.h"

#include <Pegasus/Common/Exception.h>
#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl.hpp>
#include <boost/asio/write.hpp>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <utility>
#include <vector>

namespace Pegasus::http {

namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;

/// A TCP connection. The io_context belongs to it alone and runs only inside its operations.
class TcpChannel : public Channel {
  public:
    explicit TcpChannel(Endpoint endpoint) : endpoint_(std::move(endpoint)), socket_(io_) {}

    void connect(const Deadline& deadline) {
        const std::vector<SocketAddress> addresses = lookUp(endpoint_, deadline);
        std::optional<error_code> result;
        for (std::size_t next = 0; next < addresses.size(); ++next) {
            result = connectTo(addresses[next], deadline.share(addresses.size() - next));
            if (result && !*result) {
                return;
            }
        }
        if (!result) {
            throwTimeOut(endpoint_, deadline, "the connection was not accepted");
        }
        throw CannotConnectException(String("cannot connect to " + endpoint_.text() + ": " + result->message()));
    }

    void write(std::string_view bytes, const Deadline& deadline) override { writeTo(socket_, bytes, deadline); }

    std::size_t readSome(char* buffer, std::size_t size, const Deadline& deadline) override {
        return readFrom(socket_, buffer, size, deadline);
    }

    bool isClosedByPeer() override { return events(POLLRDHUP) != 0; }

    bool hasInput() override { return events(POLLIN) != 0; }

  protected:
    const Endpoint& endpoint() const { return endpoint_; }
    tcp::socket& socket() { return socket_; }

    /// Starts an asynchronous operation and runs it to its end. Nothing when the deadline comes first, also when both
    /// are found to have come; the connection is then closed.
    template <typename Start>
    std::optional<error_code> await(const Deadline& deadline, Start start) {
        std::optional<error_code> result;
        start([&](const error_code& error, std::size_t bytes = 0) {
            result = error;
            transferred_ = bytes;
        });
        io_.restart();
        while (!result && io_.run_one_until(deadline.end()) > 0) {
        }
        if (result && deadline.remaining() > Deadline::Clock::duration::zero()) {
            return result;
        }
        // The handler refers to this frame: it must have run before the frame goes.
        error_code ignored;
        socket_.close(ignored);
        io_.restart();
        io_.run();
        return std::nullopt;
    }

    template <typename Stream>
    void writeTo(Stream& stream, std::string_view bytes, const Deadline& deadline) {
        const auto result = await(deadline, [&](auto handler) {
            asio::async_write(stream, asio::buffer(bytes.data(), bytes.size()), handler);
        });
        if (!result) {
            throwTimeOut(endpoint_, deadline, "the request was not accepted");
        }
        if (*result) {
            throw ConnectionLost{result->message()};
        }
    }

    template <typename Stream>
    std::size_t readFrom(Stream& stream, char* buffer, std::size_t size, const Deadline& deadline) {
        const auto result =
            await(deadline, [&](auto handler) { stream.async_read_some(asio::buffer(buffer, size), handler); });
        if (!result) {
            throwTimeOut(endpoint_, deadline, "no complete answer came");
        }
        if (isEnd(*result)) {
            return 0;
        }
        if (*result) {
            throw ConnectionLost{result->message()};
        }
        return transferred_;
    }

  private:
    /// Many servers close without TLS's closing alert. That is no risk here: an answer that is delimited by its end
    /// is a document, and a document tells by itself whether it is complete.
    static bool isEnd(const error_code& error) {
        return error == asio::error::eof || error == asio::ssl::error::stream_truncated;
    }

    /// Those of the wanted events, and of the error events, that are there now.
    int events(short wanted) {
        pollfd state{socket_.native_handle(), wanted, 0};
        ::poll(&state, 1, 0);
        return state.revents;
    }

    /// A socket that the host's child processes do not inherit.
    error_code openSocket(const tcp& protocol) {
        error_code error;
        socket_.close(error);
        const int descriptor = ::socket(protocol.family(), SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP);
        if (descriptor < 0) {
            return {errno, boost::system::system_category()};
        }
        socket_.assign(protocol, descriptor, error);
        return error;
    }

    std::optional<error_code> connectTo(const SocketAddress& address, const Deadline& deadline) {
        tcp::endpoint target;
        target.resize(address.size);
        std::memcpy(target.data(), &address.bytes, address.size);

        error_code error = openSocket(target.protocol());
        if (error) {
            return error;
        }
        socket_.set_option(tcp::no_delay(true), error);
        return await(deadline, [&](auto handler) { socket_.async_connect(target, handler); });
    }

    const Endpoint endpoint_;
    asio::io_context io_{1};
    tcp::socket socket_;
    std::size_t transferred_ = 0;
};

/// The same with TLS on top.
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

  private:
    [[noreturn]] void fail(const std::string& what) const {
        throw SSLException(String(endpoint().text() + ": " + what));
    }

    static std::string reason(const error_code& error) {
        if (error.category() == asio::error::get_ssl_category()) {
            const auto code = static_cast<unsigned long>(error.value());
            const char* text = ERR_reason_error_string(code);
            const std::string plain = ERR_GET_REASON(code) == SSL_R_WRONG_VERSION_NUMBER
                                          ? " (the server does not seem to speak TLS on this port)"
                                          : "";
            return (text != nullptr ? text : error.message()) + plain;
        }
        return error == asio::error::eof || error == asio::ssl::error::stream_truncated
                   ? "the server closed the connection"
                   : error.message();
    }

    const SSLContext settings_;
    asio::ssl::context context_;
    asio::ssl::stream<tcp::socket&> stream_;
    PeerCheck check_;
};

} // namespace

std::unique_ptr<Channel> Channel::open(const Endpoint& endpoint, const SSLContext* tls, const Deadline& deadline) {
    try {
        if (tls == nullptr) {
            auto channel = std::make_unique<TcpChannel>(endpoint);
            channel->connect(deadline);
            return channel;
        }
        auto channel = std::make_unique<TlsChannel>(endpoint, *tls);
        channel->connect(deadline);
        channel->shakeHands(deadline);
        return channel;
    } catch (const boost::system::system_error& error) {
        // The io_context or the TLS stream could not be made: the process is short of file descriptors, for example.
        throw CannotConnectException(String("cannot connect to " + endpoint.text() + ": " + error.what()));
    }
}

} // namespace Pegasus::http
