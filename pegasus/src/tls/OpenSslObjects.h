#pragma once

#include <openssl/bio.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>

#include <memory>

namespace Pegasus::tls {

/// Frees an object of OpenSSL by the function that OpenSSL has for it.
template <auto Free>
struct Freeing {
    template <typename T>
    void operator()(T* object) const {
        Free(object);
    }
};

using BioPtr = std::unique_ptr<BIO, Freeing<&BIO_free>>;
using CertificatePtr = std::unique_ptr<X509, Freeing<&X509_free>>;
using KeyPtr = std::unique_ptr<EVP_PKEY, Freeing<&EVP_PKEY_free>>;
using SessionPtr = std::unique_ptr<SSL_SESSION, Freeing<&SSL_SESSION_free>>;
using OpenSslContextPtr = std::unique_ptr<SSL_CTX, Freeing<&SSL_CTX_free>>;

} // namespace Pegasus::tls
