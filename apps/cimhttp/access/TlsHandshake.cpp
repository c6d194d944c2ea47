#include "access/TlsHandshake.h"

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <arpa/inet.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <memory>
#include <system_error>

namespace {

template <auto Function>
struct Deleter {
    template <typename T>
    void operator()(T* pointer) const {
        Function(pointer);
    }
};

using Context = std::unique_ptr<SSL_CTX, Deleter<&::SSL_CTX_free>>;
using Connection = std::unique_ptr<SSL, Deleter<&::SSL_free>>;
using Certificate = std::unique_ptr<X509, Deleter<&::X509_free>>;
using Names = std::unique_ptr<GENERAL_NAMES, Deleter<&::GENERAL_NAMES_free>>;
using Memory = std::unique_ptr<BIO, Deleter<&::BIO_free_all>>;

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

std::string BytesOf(const ASN1_STRING* text) {
    return {reinterpret_cast<const char*>(::ASN1_STRING_get0_data(text)),
            static_cast<std::size_t>(::ASN1_STRING_length(text))};
}

/// Empty for what is no address.
std::string AddressText(const std::string& bytes) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    const bool isKnown = bytes.size() == sizeof(in_addr) || bytes.size() == sizeof(in6_addr);
    const int family = bytes.size() == sizeof(in_addr) ? AF_INET : AF_INET6;
    return isKnown ? ::inet_ntop(family, bytes.data(), text.data(), text.size()) : std::string();
}

std::vector<std::string> NamesOf(const X509* certificate) {
    const Names names(
        static_cast<GENERAL_NAMES*>(::X509_get_ext_d2i(certificate, NID_subject_alt_name, nullptr, nullptr)));
    std::vector<std::string> texts;
    for (int i = 0; names && i < sk_GENERAL_NAME_num(names.get()); ++i) {
        const GENERAL_NAME* const name = sk_GENERAL_NAME_value(names.get(), i);
        if (name->type == GEN_DNS) {
            texts.push_back(BytesOf(name->d.dNSName));
        } else if (name->type == GEN_IPADD) {
            texts.push_back(AddressText(BytesOf(name->d.iPAddress)));
        }
    }
    return texts;
}

/// Keeps the signal SIGPIPE, which OpenSSL raises when it writes to a connection that the server has closed, from
/// ending the program.
class PipeSignalGuard {
  public:
    PipeSignalGuard() {
        ::sigemptyset(&pipe_);
        ::sigaddset(&pipe_, SIGPIPE);
        ::pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
    }
    ~PipeSignalGuard() {
        const timespec atOnce{};
        while (::sigtimedwait(&pipe_, nullptr, &atOnce) == SIGPIPE) {
        }
        ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    PipeSignalGuard(const PipeSignalGuard&) = delete;
    PipeSignalGuard& operator=(const PipeSignalGuard&) = delete;

  private:
    sigset_t pipe_{};
    sigset_t before_{};
};

/// Empty for what is no time.
std::string TimeText(const ASN1_TIME* time) {
    std::tm parts{};
    std::array<char, sizeof "2026-11-22T08:00:00Z" + 8> text{}; // years may have more digits
    if (::ASN1_TIME_to_tm(time, &parts) == 1) {
        std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    }
    return text.data();
}

void Describe(const X509* certificate, cimhttp::TlsDetails& details) {
    details.subject = NameText(::X509_get_subject_name(certificate));
    details.issuer = NameText(::X509_get_issuer_name(certificate));
    details.names = NamesOf(certificate);
    details.validFrom = TimeText(::X509_get0_notBefore(certificate));
    details.validUntil = TimeText(::X509_get0_notAfter(certificate));
    details.fingerprint = Fingerprint(certificate);
}

/// Sends none when the server asks for the client's certificate, but remembers that it did.
int NoteRequest(SSL* connection, X509** /*certificate*/, EVP_PKEY** /*key*/) {
    static_cast<cimhttp::TlsDetails*>(SSL_get_app_data(connection))->asksForCertificate = true;
    return 0;
}

/// Why the handshake has failed; `result` is what SSL_connect() returned, `error` the errno behind it.
std::string FailureText(const SSL* connection, int result, int error) {
    const char* const reason = ::ERR_reason_error_string(::ERR_peek_error());
    if (reason != nullptr) {
        return reason;
    }
    const bool isLate = ::SSL_get_error(connection, result) == SSL_ERROR_WANT_READ || error == EAGAIN;
    if (isLate) {
        return "the server does not answer in time";
    }
    return error == 0 ? "the server closed the connection" : std::generic_category().message(error);
}

} // namespace

extern "C" bool CimhttpTlsHandshake(int socket, const std::string& host, cimhttp::TlsDetails& details) {
    const PipeSignalGuard guard;
    ::ERR_clear_error();
    const Context context(::SSL_CTX_new(::TLS_client_method()));
    const Connection connection(context ? ::SSL_new(context.get()) : nullptr);
    if (!connection || ::SSL_set_fd(connection.get(), socket) != 1) {
        ::ERR_clear_error();
        details.failure = "there is not enough memory";
        return false;
    }
    SSL_set_app_data(connection.get(), &details);
    ::SSL_CTX_set_client_cert_cb(context.get(), &NoteRequest);
    SSL_set_tlsext_host_name(connection.get(), host.c_str());
    errno = 0;
    const int result = ::SSL_connect(connection.get());
    if (result != 1) {
        details.failure = FailureText(connection.get(), result, errno);
    }
    details.version = ::SSL_get_version(connection.get());
    const char* const cipher = ::SSL_get_cipher_name(connection.get());
    details.cipher = cipher == nullptr ? "" : cipher;
    const Certificate certificate{::SSL_get1_peer_certificate(connection.get())};
    if (certificate) {
        Describe(certificate.get(), details);
        details.isSelfSigned = ::X509_self_signed(certificate.get(), 0) == 1;
    }
    if (result == 1) {
        ::SSL_shutdown(connection.get());
    }
    ::ERR_clear_error();
    return certificate != nullptr;
}
