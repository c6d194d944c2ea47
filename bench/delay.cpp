// delay ADDRESS TARGET PORT MILLISECONDS [LOST]: a link to a server that is far away. It listens on a port of an
// address and carries every connection to the same port of the target; each byte arrives so much later than it was
// sent, in either direction, and opening a connection takes a round trip, as it does on such a link. Of a hundred
// segments, LOST do not arrive: a segment is then sent again two round trips later, which is when a sender looks after
// it that hears nothing, and what follows on its connection waits for it. Chance depends on the number of the
// connection alone, so that the losses are the same in each run. Runs until it is ended.

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
#include <random>
#include <string>
#include <string_view>
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

constexpr std::size_t kSegment = 1448; // bytes of TCP in a packet of Ethernet

/// How a link treats what it carries.
struct Quality {
    Milliseconds delay;
    double lost = 0;       ///< the probability of a segment's loss
    unsigned int seed = 0; ///< of chance, which is another for each connection

    Milliseconds UntilSentAgain() const { return 4 * delay; }
};

/// Carries bytes one way. It lives as long as it waits for something.
class Direction : public std::enable_shared_from_this<Direction> {
  public:
    /// Nothing arrives before `earliest`.
    Direction(std::shared_ptr<Link> link, tcp::socket& from, tcp::socket& to, const Quality& quality,
              Clock::time_point earliest)
        : link_(std::move(link)),
          from_(from),
          to_(to),
          timer_(from.get_executor()),
          quality_(quality),
          chance_(quality.seed),
          isLost_(quality.lost),
          earliest_(earliest) {}

    void Read() {
        from_.async_read_some(asio::buffer(buffer_),
                              [self = shared_from_this()](const error_code& error, std::size_t size) {
                                  self->HoldSegments(std::string_view(self->buffer_.data(), size));
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

    void HoldSegments(std::string_view bytes) {
        for (; bytes.size() > kSegment; bytes.remove_prefix(kSegment)) {
            Hold(std::string(bytes.substr(0, kSegment)));
        }
        Hold(std::string(bytes));
    }

    void Hold(std::string bytes) {
        const bool isLost = !bytes.empty() && isLost_(chance_);
        earliest_ = std::max(Clock::now() + quality_.delay, earliest_) +
                    (isLost ? quality_.UntilSentAgain() : Milliseconds::zero());
        held_.push_back({std::move(bytes), earliest_});
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
    const Quality quality_;
    std::mt19937 chance_;
    std::bernoulli_distribution isLost_;
    Clock::time_point earliest_;
    std::array<char, 65536> buffer_{};
    std::deque<Portion> held_;
};

/// The client's system believes that the connection is open at once, so what it sends first waits for the round trip.
void Carry(tcp::socket client, const tcp::endpoint& target, const Quality& quality, asio::io_context& io) {
    const auto link = std::make_shared<Link>(std::move(client), io);
    link->server.connect(target);
    link->client.set_option(tcp::no_delay(true));
    link->server.set_option(tcp::no_delay(true));
    const Clock::time_point now = Clock::now();
    std::make_shared<Direction>(link, link->client, link->server, quality, now + 3 * quality.delay)->Read();
    std::make_shared<Direction>(link, link->server, link->client, quality, now)->Read();
}

void AcceptNext(tcp::acceptor& acceptor, const tcp::endpoint& target, const Quality& quality, asio::io_context& io) {
    acceptor.async_accept([&, target, quality](const error_code& error, tcp::socket client) {
        if (!error) {
            Carry(std::move(client), target, quality, io);
        }
        AcceptNext(acceptor, target, {quality.delay, quality.lost, quality.seed + 1}, io);
    });
}

} // namespace

int main(int argc, char** argv) try {
    if (argc != 5 && argc != 6) {
        std::fprintf(stderr, "usage: %s ADDRESS TARGET PORT MILLISECONDS [LOST]\n", argv[0]);
        return 2;
    }
    const auto port = static_cast<unsigned short>(std::atoi(argv[3]));
    asio::io_context io;
    tcp::acceptor acceptor(io, {asio::ip::make_address(argv[1]), port});
    constexpr double kHundred = 100;
    const Quality quality{Milliseconds(std::atoi(argv[4])), argc == 6 ? std::atof(argv[5]) / kHundred : 0, 0};
    AcceptNext(acceptor, {asio::ip::make_address(argv[2]), port}, quality, io);
    std::puts("ready");
    std::fflush(stdout);
    io.run();
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
    return 1;
}
