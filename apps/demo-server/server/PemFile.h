#pragma once

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <memory>
#include <string>
#include <vector>

namespace demo {

struct FreeX509 {
    void operator()(X509* certificate) const { X509_free(certificate); }
};
struct FreeKey {
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};
using X509Pointer = std::unique_ptr<X509, FreeX509>;
using KeyPointer = std::unique_ptr<EVP_PKEY, FreeKey>;

/// A file with certificates, a private key, or both, in the form PEM. Whatever it throws is a std::runtime_error with
/// the name of the file.
class PemFile {
  public:
    /// Throws when the file cannot be read.
    explicit PemFile(const std::string& name);

    /// All certificates, in their order. Throws when there is none, or one that is damaged.
    std::vector<X509Pointer> Certificates() const;

    /// The first private key. Throws when there is none, or one that is damaged or encrypted.
    KeyPointer PrivateKey() const;

  private:
    std::string name_;
    std::string text_;
};

} // namespace demo
