#include "connection/TlsProbe.h"

#include <netdb.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdio>
#include <memory>

namespace cimhttp {

namespace {

constexpr timeval kPatience{5, 0}; // for each step

template <auto Function>
struct Deleter {
    template <typename T>
    void operator()(T* pointer) const {
        Function(pointer);
    }
};

using Addresses = std::unique_ptr<addrinfo, Deleter<&::freeaddrinfo>>;
using Context = std::unique_ptr<SSL_CTX, Deleter<&::SSL_CTX_free>>;
using Connection = std::unique_ptr<SSL, Deleter<&::SSL_free>>;
using Certificate = std::unique_ptr<X509, Deleter<&::X509_free>>;
using Memory = std::unique_ptr<BIO, Deleter<&::BIO_free_all>>;

class Socket {
  public:
    explicit Socket(const addrinfo& address)
        : descriptor_(::socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC, address.ai_protocol)) {
        ::setsockopt(descriptor_, SOL_SOCKET, SO_SNDTIMEO, &kPatience, sizeof kPatience); // for connecting too
        ::setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &kPatience, sizeof kPatience);
    }
    ~Socket() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    bool Connect(const addrinfo& address) const {
        return descriptor_ >= 0 && ::connect(descriptor_, address.ai_addr, address.ai_addrlen) == 0;
    }

    int Descriptor() const { return descriptor_; }

  private:
    int descriptor_;
};

Addresses AddressesOf(const std::string& host, int port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    return Addresses(::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found) == 0 ? found : nullptr);
}

/// What is written to memory by `write`.
template <typename Write>
std::string Text(const Write& write) {
    const Memory memory(::BIO_new(::BIO_s_mem()));
    write(memory.get());
    char* data = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &data);
    return {data, static_cast<std::size_t>(size)};
}

std::string NameText(const X509_NAME* name) {
    return Text([&](BIO* memory) { ::X509_NAME_print_ex(memory, name, 0, XN_FLAG_RFC2253 & ~ASN1_STRFLGS_ESC_MSB); });
}

std::string Fingerprint(const X509* certificate) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    ::X509_digest(certificate, ::EVP_sha256(), digest, &size);
    std::string text;
    for (unsigned i = 0; i < size; ++i) {
        char byte[sizeof ":00"];
        std::snprintf(byte, sizeof byte, i == 0 ? "%02X" : ":%02X", digest[i]);
        text += byte;
    }
    return text;
}

std::optional<ProbeResult::Tls> Handshake(int descriptor, const std::string& host) {
    const Context context(::SSL_CTX_new(::TLS_client_method()));
    const Connection connection(::SSL_new(context.get()));
    ::SSL_set_tlsext_host_name(connection.get(), host.c_str());
    if (::SSL_set_fd(connection.get(), descriptor) != 1 || ::SSL_connect(connection.get()) != 1) {
        ::ERR_clear_error();
        return std::nullopt;
    }
    ProbeResult::Tls tls{
        ::SSL_get_version(connection.get()), ::SSL_get_cipher_name(connection.get()), {}, {}, {}, {}, false};
    if (const Certificate certificate{::SSL_get1_peer_certificate(connection.get())}) {
        tls.subject = NameText(::X509_get_subject_name(certificate.get()));
        tls.issuer = NameText(::X509_get_issuer_name(certificate.get()));
        tls.valid_until =
            Text([&](BIO* memory) { ::ASN1_TIME_print(memory, ::X509_get0_notAfter(certificate.get())); });
        tls.fingerprint = Fingerprint(certificate.get());
        tls.is_self_signed = ::X509_self_signed(certificate.get(), 0) == 1;
    }
    ::SSL_shutdown(connection.get());
    return tls;
}

} // namespace

std::optional<ProbeResult> ProbeServer(const std::string& host, int port, bool with_tls) {
    const Addresses addresses = AddressesOf(host, port);
    for (const addrinfo* address = addresses.get(); address != nullptr; address = address->ai_next) {
        const Socket socket(*address);
        const auto begin = std::chrono::steady_clock::now();
        if (!socket.Connect(*address)) {
            continue;
        }
        const auto round_trip =
            std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);
        return ProbeResult{round_trip, with_tls ? Handshake(socket.Descriptor(), host) : std::nullopt};
    }
    return std::nullopt;
}

} // namespace cimhttp
