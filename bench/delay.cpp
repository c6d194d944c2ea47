// delay ADDRESS TARGET PORT MILLISECONDS: a link to a server that is far away. It listens on a port of an address and
// carries every connection to the same port of the target; each byte arrives so much later than it was sent, in either
// direction, and opening a connection takes a round trip, as it does on such a link. Runs until it is ended.

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/write.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <exception>
#include <memory>
#include <string>
#include <utility>

namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

/// A connection that is carried, with its two ends.
struct Link {
    Link(tcp::socket itsClient, asio::io_context& io) : client(std::move(itsClient)), server(io) {}

    tcp::socket client;
    tcp::socket server;
};

/// Carries bytes one way. It lives as long as it waits for something.
class Direction : public std::enable_shared_from_this<Direction> {
  public:
    /// Nothing arrives before `earliest`.
    Direction(std::shared_ptr<Link> link, tcp::socket& from, tcp::socket& to, Milliseconds delay,
              Clock::time_point earliest)
        : link_(std::move(link)),
          from_(from),
          to_(to),
          timer_(from.get_executor()),
          delay_(delay),
          earliest_(earliest) {}

    void Read() {
        from_.async_read_some(asio::buffer(buffer_),
                              [self = shared_from_this()](const error_code& error, std::size_t size) {
                                  self->Hold(std::string(self->buffer_.data(), size));
                                  if (!error) {
                                      self->Read();
                                  }
                              });
    }

  private:
    struct Portion {
        std::string bytes; ///< none at the end of the stream
        Clock::time_point due;
    };

    void Hold(std::string bytes) {
        held_.push_back({std::move(bytes), std::max(Clock::now() + delay_, earliest_)});
        if (held_.size() == 1) {
            AwaitFirst();
        }
    }

    void AwaitFirst() {
        timer_.expires_at(held_.front().due);
        timer_.async_wait([self = shared_from_this()](const error_code&) { self->DeliverFirst(); });
    }

    void DeliverFirst() {
        if (held_.front().bytes.empty()) {
            error_code ignored;
            to_.shutdown(tcp::socket::shutdown_send, ignored);
            return;
        }
        asio::async_write(to_, asio::buffer(held_.front().bytes),
                          [self = shared_from_this()](const error_code& error, std::size_t) {
                              self->held_.pop_front();
                              if (!error && !self->held_.empty()) {
                                  self->AwaitFirst();
                              }
                          });
    }

    const std::shared_ptr<Link> link_;
    tcp::socket& from_;
    tcp::socket& to_;
    asio::steady_timer timer_;
    const Milliseconds delay_;
    const Clock::time_point earliest_;
    std::array<char, 65536> buffer_{};
    std::deque<Portion> held_;
};

/// The client's system believes that the connection is open at once, so what it sends first waits for the round trip.
void Carry(tcp::socket client, const tcp::endpoint& target, Milliseconds delay, asio::io_context& io) {
    const auto link = std::make_shared<Link>(std::move(client), io);
    link->server.connect(target);
    link->client.set_option(tcp::no_delay(true));
    link->server.set_option(tcp::no_delay(true));
    const Clock::time_point now = Clock::now();
    std::make_shared<Direction>(link, link->client, link->server, delay, now + 3 * delay)->Read();
    std::make_shared<Direction>(link, link->server, link->client, delay, now)->Read();
}

void AcceptNext(tcp::acceptor& acceptor, const tcp::endpoint& target, Milliseconds delay, asio::io_context& io) {
    acceptor.async_accept([&, target, delay](const error_code& error, tcp::socket client) {
        if (!error) {
            Carry(std::move(client), target, delay, io);
        }
        AcceptNext(acceptor, target, delay, io);
    });
}

} // namespace

int main(int argc, char** argv) try {
    if (argc != 5) {
        std::fprintf(stderr, "usage: %s ADDRESS TARGET PORT MILLISECONDS\n", argv[0]);
        return 2;
    }
    const auto port = static_cast<unsigned short>(std::atoi(argv[3]));
    asio::io_context io;
    tcp::acceptor acceptor(io, {asio::ip::make_address(argv[1]), port});
    AcceptNext(acceptor, {asio::ip::make_address(argv[2]), port}, Milliseconds(std::atoi(argv[4])), io);
    std::puts("ready");
    std::fflush(stdout);
    io.run();
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
    return 1;
}
