#include "support/ScriptedServer.h"

#include <openssl/err.h>
#include <openssl/ssl.h>

#include <linux/sockios.h>
#include <netdb.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <mutex>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace support {

namespace {

constexpr std::size_t kReadSize = 16384;

struct SslContextFree {
    void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
};
struct SslFree {
    void operator()(SSL* ssl) const { SSL_free(ssl); }
};
using SslContextPtr = std::shared_ptr<SSL_CTX>;
using SslPtr = std::unique_ptr<SSL, SslFree>;

/// OpenSSL writes to its socket without MSG_NOSIGNAL. Blocking the signal in the server's own threads leaves it deadly
/// for the code under test, as it is in a real host.
void BlockBrokenPipeSignal() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

/// A socket that one thread uses and another may shut down at any time.
class Socket {
  public:
    explicit Socket(int descriptor) : descriptor_(descriptor) {}
    ~Socket() { Close(); }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    /// For the thread that owns the socket. -1 once closed.
    int Descriptor() const { return descriptor_; }

    /// Ends both directions, which wakes a thread that is blocked in a call on the socket.
    void Shutdown() {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (descriptor_ >= 0) {
            ::shutdown(descriptor_, SHUT_RDWR);
        }
    }

    void Close() {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (descriptor_ >= 0) {
            ::close(std::exchange(descriptor_, -1));
        }
    }

  private:
    std::mutex mutex_;
    int descriptor_;
};

class Peer : public Connection {
  public:
    Peer(int descriptor, std::size_t index) : socket_(descriptor), index_(index) {}

    /// The server's side of a TLS handshake; from then on everything is encrypted. False when it fails.
    bool StartTls(SSL_CTX& context) {
        ssl_.reset(SSL_new(&context));
        SSL_set_fd(ssl_.get(), socket_.Descriptor());
        return SSL_accept(ssl_.get()) == 1;
    }

    void Shutdown() { socket_.Shutdown(); }

    std::size_t Index() const override { return index_; }

    bool IsResumed() const override { return SSL_session_reused(ssl_.get()) == 1; }

    std::optional<HttpRequest> ReadRequest() override {
        std::size_t end = 0;
        while ((end = unread_.find("\r\n\r\n")) == std::string::npos) {
            if (!Fill()) {
                return std::nullopt;
            }
        }
        HttpRequest request = ParseHead(unread_.substr(0, end + 2));
        unread_.erase(0, end + 4);
        const std::string length = request.Header("Content-Length");
        const std::size_t size = length.empty() ? 0 : std::stoul(length);
        while (unread_.size() < size) {
            if (!Fill()) {
                return std::nullopt;
            }
        }
        request.body = unread_.substr(0, size);
        unread_.erase(0, size);
        return request;
    }

    std::string ReadSome() override {
        if (unread_.empty()) {
            Fill();
        }
        return std::exchange(unread_, std::string());
    }

    bool Write(std::string_view bytes) override {
        while (!bytes.empty()) {
            const long sent = ssl_ ? SSL_write(ssl_.get(), bytes.data(), static_cast<int>(bytes.size()))
                                   : ::send(socket_.Descriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (sent <= 0) {
                return false;
            }
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        }
        return true;
    }

    bool Send(TlsMessage message) override {
        const bool prepared = message == TlsMessage::kSessionTicket ? SSL_new_session_ticket(ssl_.get()) == 1
                              : message == TlsMessage::kKeyUpdate
                                  ? SSL_key_update(ssl_.get(), SSL_KEY_UPDATE_REQUESTED) == 1
                                  : SSL_renegotiate(ssl_.get()) == 1;
        return prepared && SSL_do_handshake(ssl_.get()) == 1;
    }

    void WaitForDelivery() override {
        int unacknowledged = 0;
        while (::ioctl(socket_.Descriptor(), SIOCOUTQ, &unacknowledged) == 0 && unacknowledged > 0) {
            std::this_thread::yield();
        }
    }

    void Close() override {
        if (ssl_) {
            SSL_shutdown(ssl_.get());
        }
        socket_.Shutdown();
    }

    void CloseWithoutAlert() override { socket_.Shutdown(); }

    void Reset() override {
        const linger atOnce{1, 0};
        ::setsockopt(socket_.Descriptor(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
        ssl_.reset();
        socket_.Close();
    }

    void WaitForPeerClose() override {
        while (Fill()) {
            unread_.clear();
        }
    }

  private:
    bool Fill() {
        char buffer[kReadSize];
        const long received = ssl_ ? SSL_read(ssl_.get(), buffer, static_cast<int>(sizeof buffer))
                                   : ::recv(socket_.Descriptor(), buffer, sizeof buffer, 0);
        if (received <= 0) {
            return false;
        }
        unread_.append(buffer, static_cast<std::size_t>(received));
        return true;
    }

    static HttpRequest ParseHead(const std::string& head) {
        HttpRequest request;
        std::size_t begin = 0;
        for (std::size_t end = 0; (end = head.find("\r\n", begin)) != std::string::npos; begin = end + 2) {
            const std::string line = head.substr(begin, end - begin);
            if (begin == 0) {
                ParseRequestLine(line, request);
                continue;
            }
            const std::size_t colon = line.find(':');
            const std::size_t value = colon == std::string::npos ? colon : line.find_first_not_of(" \t", colon + 1);
            request.headers.emplace_back(line.substr(0, colon),
                                         value == std::string::npos ? std::string() : line.substr(value));
        }
        return request;
    }

    static void ParseRequestLine(const std::string& line, HttpRequest& request) {
        const std::size_t first = line.find(' ');
        const std::size_t second = line.rfind(' ');
        request.method = line.substr(0, first);
        if (first != second) {
            request.target = line.substr(first + 1, second - first - 1);
            request.version = line.substr(second + 1);
        }
    }

    Socket socket_;
    const std::size_t index_;
    SslPtr ssl_;
    std::string unread_;
};

void Restrict(SSL_CTX& context, TlsVersion version) {
    if (version == TlsVersion::kCurrent) {
        return;
    }
    const int only = version == TlsVersion::kOnly10   ? TLS1_VERSION
                     : version == TlsVersion::kOnly11 ? TLS1_1_VERSION
                     : version == TlsVersion::kOnly12 ? TLS1_2_VERSION
                                                      : TLS1_3_VERSION;
    SSL_CTX_set_min_proto_version(&context, only);
    SSL_CTX_set_max_proto_version(&context, only);
}

/// Without a context for its sessions a server that requires certificates resumes none.
void RequireClientCertificate(SSL_CTX& context, const std::string& authorityFile) {
    SSL_CTX_set_verify(&context, SSL_VERIFY_PEER | SSL_VERIFY_FAIL_IF_NO_PEER_CERT, nullptr);
    SSL_CTX_set_client_CA_list(&context, SSL_load_client_CA_file(authorityFile.c_str()));
    const unsigned char name[] = "test";
    if (SSL_CTX_load_verify_file(&context, authorityFile.c_str()) != 1 ||
        SSL_CTX_set_session_id_context(&context, name, sizeof name) != 1) {
        throw std::runtime_error("cannot load " + authorityFile);
    }
}

SslContextPtr MakeSslContext(const TlsOptions& options) {
    SslContextPtr context(SSL_CTX_new(TLS_server_method()), SslContextFree());
    SSL_CTX_set_security_level(context.get(),
                               0); // the old versions have no algorithms that OpenSSL still takes for safe
    Restrict(*context, options.version);
    if (SSL_CTX_use_certificate_chain_file(context.get(), options.certificateFile.c_str()) != 1 ||
        SSL_CTX_use_PrivateKey_file(context.get(), options.keyFile.c_str(), SSL_FILETYPE_PEM) != 1) {
        throw std::runtime_error("cannot load " + options.certificateFile);
    }
    if (!options.clientAuthorityFile.empty()) {
        RequireClientCertificate(*context, options.clientAuthorityFile);
    }
    return context;
}

struct AddressInfoFree {
    void operator()(addrinfo* info) const { ::freeaddrinfo(info); }
};

std::unique_ptr<addrinfo, AddressInfoFree> ParseAddress(const std::string& address, std::uint16_t port) {
    addrinfo hints{};
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (::getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &found) != 0) {
        throw std::runtime_error("not an address: " + address);
    }
    return std::unique_ptr<addrinfo, AddressInfoFree>(found);
}

[[noreturn]] void ThrowErrno(const std::string& what) { throw std::system_error(errno, std::generic_category(), what); }

std::uint16_t LocalPort(int descriptor) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    ::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size);
    char port[NI_MAXSERV] = "0";
    ::getnameinfo(reinterpret_cast<const sockaddr*>(&address), size, nullptr, 0, port, sizeof port, NI_NUMERICSERV);
    return static_cast<std::uint16_t>(std::stoul(port));
}

} // namespace

class ScriptedServer::Impl {
  public:
    Impl(Script script, std::string address) : script_(std::move(script)), address_(std::move(address)) {}

    std::uint16_t Listen(std::uint16_t port, SslContextPtr tls) {
        const auto info = ParseAddress(address_, port);
        const std::string name = address_ + " port " + std::to_string(port);
        auto listener = std::make_unique<Socket>(::socket(info->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0));
        const int on = 1;
        ::setsockopt(listener->Descriptor(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        if (::bind(listener->Descriptor(), info->ai_addr, info->ai_addrlen) != 0 ||
            ::listen(listener->Descriptor(), SOMAXCONN) != 0) {
            ThrowErrno("cannot listen on " + name);
        }
        const std::uint16_t actualPort = LocalPort(listener->Descriptor());
        Socket& socket = *listener;
        const std::lock_guard<std::mutex> lock(mutex_);
        listeners_.push_back(std::move(listener));
        threads_.emplace_back([this, &socket, tls = std::move(tls)] { Accept(socket, tls); });
        return actualPort;
    }

    void Stop() {
        stopping_ = true;
        std::vector<std::thread> threads;
        do {
            // An acceptor may have started one more thread just before it saw the end; hence the second round.
            threads.clear();
            {
                const std::lock_guard<std::mutex> lock(mutex_);
                for (const auto& listener : listeners_) {
                    listener->Shutdown();
                }
                for (const auto& peer : peers_) {
                    peer->Shutdown();
                }
                threads.swap(threads_);
            }
            for (std::thread& thread : threads) {
                thread.join();
            }
        } while (!threads.empty());
        const std::lock_guard<std::mutex> lock(mutex_);
        listeners_.clear();
        peers_.clear();
    }

    const std::string& Address() const { return address_; }
    std::size_t ConnectionCount() const { return count_; }

  private:
    void Accept(Socket& listener, const SslContextPtr& tls) {
        BlockBrokenPipeSignal();
        while (!stopping_) {
            const int descriptor = ::accept4(listener.Descriptor(), nullptr, nullptr, SOCK_CLOEXEC);
            if (descriptor < 0 && errno != ECONNABORTED && errno != EINTR && errno != EMFILE) {
                return;
            }
            if (descriptor < 0) {
                std::this_thread::yield(); // a test may have taken all descriptors for a while
                continue;
            }
            auto peer = std::make_shared<Peer>(descriptor, count_++);
            const std::lock_guard<std::mutex> lock(mutex_);
            peers_.push_back(peer);
            if (stopping_) {
                peer->Shutdown();
            }
            threads_.emplace_back([this, peer, tls] { Serve(*peer, tls); });
        }
    }

    void Serve(Peer& peer, const SslContextPtr& tls) {
        BlockBrokenPipeSignal();
        try {
            if (!tls || peer.StartTls(*tls)) {
                script_(peer);
            }
        } catch (const std::exception&) {
            // A script may give up in the middle; its peer sees the connection close.
        }
        peer.Close();
        ERR_clear_error();
    }

    const Script script_;
    const std::string address_;
    std::atomic<bool> stopping_{false};
    std::atomic<std::size_t> count_{0};
    std::mutex mutex_;
    std::vector<std::unique_ptr<Socket>> listeners_;
    std::vector<std::shared_ptr<Peer>> peers_;
    std::vector<std::thread> threads_;
};

ScriptedServer::ScriptedServer(Script script, std::string address)
    : impl_(std::make_unique<Impl>(std::move(script), std::move(address))) {}

ScriptedServer::~ScriptedServer() { Stop(); }

std::uint16_t ScriptedServer::Listen(std::uint16_t port) { return impl_->Listen(port, nullptr); }

std::uint16_t ScriptedServer::ListenTls(std::uint16_t port, const TestCertificate& certificate, TlsVersion version) {
    return ListenTls(port, {certificate.CertificateFile(), certificate.KeyFile(), version, ""});
}

std::uint16_t ScriptedServer::ListenTls(std::uint16_t port, const TlsOptions& options) {
    return impl_->Listen(port, MakeSslContext(options));
}

void ScriptedServer::Stop() { impl_->Stop(); }

const std::string& ScriptedServer::Address() const { return impl_->Address(); }

std::size_t ScriptedServer::ConnectionCount() const { return impl_->ConnectionCount(); }

} // namespace support
