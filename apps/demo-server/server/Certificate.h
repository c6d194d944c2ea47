#pragma once

#include <openssl/x509.h>

#include <memory>
#include <string>

namespace demo {

/// A key and a certificate that it signed itself, made when the object is made and kept in memory only.
class Certificate {
  public:
    /// For a server at an address (IP address or host name); the certificate is good for localhost, too. Throws
    /// std::runtime_error when OpenSSL fails.
    explicit Certificate(const std::string& address);

    X509* Get() const { return certificate_.get(); }
    EVP_PKEY* Key() const { return key_.get(); }

    /// The certificate, not the key, for a client to trust.
    std::string Pem() const;

  private:
    struct Free {
        void operator()(X509* certificate) const { X509_free(certificate); }
        void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    };

    std::unique_ptr<EVP_PKEY, Free> key_;
    std::unique_ptr<X509, Free> certificate_;
};

} // namespace demo
