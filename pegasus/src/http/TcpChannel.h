#pragma once

#include "http/Channel.h"
#include "http/TimeOut.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/error.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/write.hpp>
#include <cstddef>
#include <optional>
#include <string_view>

namespace Pegasus::http {

struct SocketAddress;

/// A TCP connection. The io_context belongs to it alone and runs only inside its operations.
class TcpChannel : public Channel {
  public:
    explicit TcpChannel(const Endpoint& endpoint) : endpoint_(endpoint), socket_(io_) {}

    /// Connects to the first of the endpoint's addresses that accepts. Throws InvalidLocatorException,
    /// CannotConnectException or ConnectionTimeoutException.
    void connect(const Deadline& deadline);

    void write(std::string_view bytes, const Deadline& deadline) override { writeTo(socket_, bytes, deadline); }

    std::size_t readSome(char* buffer, std::size_t size, const Deadline& deadline) override {
        return readFrom(socket_, buffer, size, deadline);
    }

    bool isClosedByPeer() override;
    bool hasInput() override;

  protected:
    using Socket = boost::asio::ip::tcp::socket;
    using Error = boost::system::error_code;

    const Endpoint& endpoint() const { return endpoint_; }
    Socket& socket() { return socket_; }

    /// Whether the peer has ended the stream, rather than broken it.
    virtual bool isEnd(const Error& error) const { return error == boost::asio::error::eof; }

    /// Starts an asynchronous operation and runs it to its end. Nothing when the deadline comes first, also when both
    /// are found to have come; the connection is then closed.
    template <typename Start>
    std::optional<Error> await(const Deadline& deadline, Start start) {
        std::optional<Error> result;
        start([&](const Error& error, std::size_t bytes = 0) {
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
        Error ignored;
        socket_.close(ignored);
        io_.restart();
        io_.run();
        return std::nullopt;
    }

    template <typename Stream>
    void writeTo(Stream& stream, std::string_view bytes, const Deadline& deadline) {
        const auto result = await(deadline, [&](auto handler) {
            boost::asio::async_write(stream, boost::asio::buffer(bytes.data(), bytes.size()), handler);
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
            await(deadline, [&](auto handler) { stream.async_read_some(boost::asio::buffer(buffer, size), handler); });
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
    int events(short wanted);
    Error openSocket(const boost::asio::ip::tcp& protocol);
    std::optional<Error> connectTo(const SocketAddress& address, const Deadline& deadline);

    const Endpoint endpoint_;
    boost::asio::io_context io_{1};
    Socket socket_;
    std::size_t transferred_ = 0;
};

} // namespace Pegasus::http
