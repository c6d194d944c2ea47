#pragma once

#include "server/PemFile.h"

#include <string>
#include <vector>

namespace demo {

/// What the server shows for itself: a certificate with its key, and the certificates that lead to its authority.
class Certificate {
  public:
    /// One that signed itself, made when the object is made and kept in memory only, for a server at an address (IP
    /// address or host name); it is good for localhost, too. Throws std::runtime_error when OpenSSL fails.
    explicit Certificate(const std::string& address);

    /// The first certificate in a PEM file, with those after it as its chain. The key is in a file of its own, or in
    /// the same one if no name is given. Throws std::runtime_error, with the name of the file that is at fault.
    static Certificate Read(const std::string& file, const std::string& keyFile);

    EVP_PKEY* Key() const { return key_.get(); }
    /// The certificate, and after it those that lead to its authority, if any.
    const std::vector<X509Pointer>& WithChain() const { return certificates_; }
    /// Where it comes from, for messages.
    const std::string& Origin() const { return origin_; }

    /// The certificate with its chain, not the key, for a client to trust.
    std::string Pem() const;

  private:
    Certificate(std::vector<X509Pointer> certificates, KeyPointer key, std::string origin);

    /// Each is signed by the next.
    std::vector<X509Pointer> certificates_;
    KeyPointer key_;
    std::string origin_;
};

} // namespace demo
