#include "web/WebServer.h"

#include "Failure.h"
#include "text/ParsedText.h"
#include "web/WebConnection.h"
#include "web/WebLogin.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/thread_pool.hpp>

#include <atomic>
#include <cstdint>
#include <thread>
#include <utility>

namespace cimhttp {

namespace net = boost::asio;
using Tcp = net::ip::tcp;

namespace {

[[noreturn]] void Refuse(const std::string& what) { throw Failure(Failure::kUsage, what); }

std::string Quoted(const WebPlace& place) {
    const bool isIpv6 = place.address.find(':') != std::string::npos;
    return (isIpv6 ? '[' + place.address + ']' : place.address) + ':' + std::to_string(place.port);
}

std::unique_ptr<net::ssl::context> TlsOf(const WebAccess& access) {
    if (access.certificate.empty()) {
        return nullptr;
    }
    auto tls = std::make_unique<net::ssl::context>(net::ssl::context::tls_server);
    tls->set_options(net::ssl::context::default_workarounds | net::ssl::context::no_tlsv1 |
                     net::ssl::context::no_tlsv1_1 | net::ssl::context::single_dh_use);
    if (access.leastVersion == WebAccess::LeastVersion::kTls13) {
        tls->set_options(net::ssl::context::no_tlsv1_2);
    }
    boost::system::error_code error;
    if (tls->use_certificate_chain_file(access.certificate, error)) {
        Refuse("the certificate " + access.certificate + " cannot be used: " + error.message());
    }
    if (tls->use_private_key_file(access.key, net::ssl::context::pem, error)) {
        Refuse("the key " + access.key + " cannot be used: " + error.message());
    }
    if (!access.clientAuthorities.empty()) {
        tls->set_verify_mode(net::ssl::verify_peer | net::ssl::verify_fail_if_no_peer_cert);
        if (tls->load_verify_file(access.clientAuthorities, error)) {
            Refuse("the certificates of " + access.clientAuthorities + " cannot be used: " + error.message());
        }
    }
    return tls;
}

Tcp::acceptor Listening(net::io_context& io, const WebPlace& place) {
    boost::system::error_code error;
    const auto address = net::ip::make_address(place.address, error);
    if (error) {
        Refuse("'" + place.address + "' is no address to listen on");
    }
    Tcp::acceptor acceptor(io);
    const Tcp::endpoint endpoint(address, static_cast<unsigned short>(place.port));
    if (acceptor.open(endpoint.protocol(), error) || acceptor.set_option(Tcp::acceptor::reuse_address(true), error) ||
        acceptor.bind(endpoint, error) || acceptor.listen(net::socket_base::max_listen_connections, error)) {
        Refuse("cannot listen on " + Quoted(place) + ": " + error.message());
    }
    return acceptor;
}

} // namespace

WebPlace WebPlace::In(const std::string& text) {
    const std::size_t colon = text.rfind(':');
    const auto port = colon == std::string::npos ? std::nullopt : NumberIn<std::uint16_t>(text.substr(colon + 1));
    if (!port || *port == 0) {
        Refuse("'" + text +
               "' is no place to listen on: ADDRESS:PORT is, such as 127.0.0.1:9989, or :9989 for all "
               "addresses");
    }
    std::string address = text.substr(0, colon);
    if (address.size() > 2 && address.front() == '[' && address.back() == ']') {
        address = address.substr(1, address.size() - 2);
    }
    if (address == "localhost") {
        address = "127.0.0.1";
    }
    return {address.empty() ? "::" : address, *port};
}

class WebServer::Implementation {
  public:
    Implementation(const WebPlace& place, const WebAccess& access, WebHandler handler, const WebLimits& limits)
        : limits_(limits),
          login_(access.users),
          tls_(TlsOf(access)),
          acceptor_(Listening(io_, place)),
          workers_(limits.threads),
          service_{login_, std::move(handler), workers_, limits_},
          port_(acceptor_.local_endpoint().port()),
          url_((tls_ ? "https://" : "http://") + Quoted({place.address, port_})) {
        AcceptNext();
        thread_ = std::thread([this] { io_.run(); });
    }

    ~Implementation() {
        net::post(io_, [this] { acceptor_.close(); });
        workers_.join();
        service_.answers.WaitUntilNone(limits_.transfer);
        io_.stop();
        thread_.join();
    }
    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;

    const std::string& Url() const { return url_; }

    int Port() const { return port_; }

  private:
    void AcceptNext() {
        acceptor_.async_accept([this](const boost::system::error_code& error, Tcp::socket socket) {
            if (error == net::error::operation_aborted) {
                return;
            }
            if (!error) {
                ServeWebConnection(std::move(socket), tls_.get(), service_);
            }
            AcceptNext();
        });
    }

    const WebLimits limits_;
    WebLogin login_;
    net::io_context io_{1};
    /// Answers are posted to it after the last connection was accepted.
    const net::executor_work_guard<net::io_context::executor_type> work_{io_.get_executor()};
    const std::unique_ptr<net::ssl::context> tls_;
    Tcp::acceptor acceptor_;
    net::thread_pool workers_;
    WebService service_;
    const int port_;
    const std::string url_;
    std::thread thread_;
};

WebServer::WebServer(const WebPlace& place, const WebAccess& access, WebHandler handler, const WebLimits& limits)
    : implementation_(std::make_unique<Implementation>(place, access, std::move(handler), limits)) {}

WebServer::~WebServer() = default;

std::string WebServer::Url() const { return implementation_->Url(); }

int WebServer::Port() const { return implementation_->Port(); }

} // namespace cimhttp
