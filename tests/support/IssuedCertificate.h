#pragma once

#include <openssl/types.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// A throw-away certificate with its key, in memory: an authority's, which can sign others, or a server's or client's.
class IssuedCertificate {
  public:
    enum class Key { kEc, kRsa1024 };

    struct Options {
        std::string commonName = "cimhttp test server"; ///< UTF-8; empty: none
        /// OpenSSL's names of extensions with their values as in its configuration file: {"subjectAltName", "DNS:a"}.
        std::vector<std::pair<std::string, std::string>> extensions;
        int validFromDay = -2; ///< counted from now
        int validUntilDay = 2;
        Key key = Key::kEc;
        std::string digest = "SHA256"; ///< of the signature
    };

    /// The options of an authority, with further extensions.
    static Options Authority(const std::string& commonName,
                             std::vector<std::pair<std::string, std::string>> extensions = {});

    /// One that signs itself.
    explicit IssuedCertificate(const Options& options);
    IssuedCertificate(const Options& options, const IssuedCertificate& issuer);

    std::string Pem() const;
    std::string KeyPem() const;
    /// The key as PEM, encrypted with this passphrase.
    std::string EncryptedKeyPem(const std::string& passphrase) const;
    /// SHA-256, pairs of digits in upper case with colons between them.
    std::string Fingerprint() const;
    /// The end of its validity, such as 2026-11-22T08:00:00Z.
    std::string ValidUntil() const;
    std::string ValidFrom() const;
    /// The name under which OpenSSL looks for it in a folder.
    std::string HashedName() const;

  private:
    IssuedCertificate(const Options& options, const IssuedCertificate* issuer);

    std::shared_ptr<EVP_PKEY> key_;
    std::shared_ptr<X509> certificate_;
};

} // namespace support
