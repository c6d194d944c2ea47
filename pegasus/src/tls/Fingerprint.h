#pragma once

#include <openssl/types.h>

#include <array>
#include <string>
#include <string_view>

namespace Pegasus::tls {

/// The SHA-256 of a certificate.
class Fingerprint {
  public:
    /// From 64 hexadecimal digits in any case; between two pairs may be a colon. Throws SSLException otherwise.
    static Fingerprint parse(std::string_view text);

    static Fingerprint of(const X509& certificate);

    /// Pairs of digits in upper case, with colons between them.
    std::string text() const;

    friend bool operator==(const Fingerprint& a, const Fingerprint& b) { return a.bytes_ == b.bytes_; }
    friend bool operator!=(const Fingerprint& a, const Fingerprint& b) { return !(a == b); }

  private:
    static constexpr std::size_t kBytes = 32;

    std::array<unsigned char, kBytes> bytes_{};
};

} // namespace Pegasus::tls
