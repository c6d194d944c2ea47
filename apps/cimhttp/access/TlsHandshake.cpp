#include "access/TlsHandshake.h"

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>

#include <cstdio>
#include <memory>

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

void Describe(const X509* certificate, cimhttp::TlsDetails& details) {
    details.subject = NameText(::X509_get_subject_name(certificate));
    details.issuer = NameText(::X509_get_issuer_name(certificate));
    details.valid_until = Text([&](BIO* memory) { ::ASN1_TIME_print(memory, ::X509_get0_notAfter(certificate)); });
    details.fingerprint = Fingerprint(certificate);
}

} // namespace

extern "C" bool CimhttpTlsHandshake(int socket, const std::string& host, cimhttp::TlsDetails& details) {
    const Context context(::SSL_CTX_new(::TLS_client_method()));
    const Connection connection(context ? ::SSL_new(context.get()) : nullptr);
    if (!connection) { // for lack of memory
        ::ERR_clear_error();
        return false;
    }
    ::SSL_set_tlsext_host_name(connection.get(), host.c_str());
    if (::SSL_set_fd(connection.get(), socket) != 1 || ::SSL_connect(connection.get()) != 1) {
        ::ERR_clear_error();
        return false;
    }
    details.version = ::SSL_get_version(connection.get());
    details.cipher = ::SSL_get_cipher_name(connection.get());
    if (const Certificate certificate{::SSL_get1_peer_certificate(connection.get())}) {
        Describe(certificate.get(), details);
        details.is_self_signed = ::X509_self_signed(certificate.get(), 0) == 1;
    }
    ::SSL_shutdown(connection.get());
    return true;
}
