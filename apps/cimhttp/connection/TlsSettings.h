#pragma once

#include <optional>
#include <string>

namespace cimhttp {

/// How the ends of an encrypted connection are verified. All of it is optional.
struct TlsSettings {
    std::optional<std::string> ca;          ///< PEM file, or folder, with authorities that the server is verified by
    std::optional<std::string> fingerprint; ///< of the certificate that the server has, see NormalFingerprint()
    std::optional<std::string> certificate; ///< PEM file with the user's own, for servers that ask for one
    std::optional<std::string> key;         ///< the PEM file with its key, unless that is in the same
    std::optional<bool> verify;             ///< whether a server that nothing verifies is refused

    /// Whether the server is verified by something.
    bool Verifies() const { return ca || fingerprint; }

    /// Takes what is not set here from another place. What verifies the server belongs together, and so do the
    /// certificate and its key.
    void Complete(const TlsSettings& other) {
        if (!Verifies()) {
            ca = other.ca;
            fingerprint = other.fingerprint;
        }
        if (!certificate && !key) {
            certificate = other.certificate;
            key = other.key;
        }
        verify = verify ? verify : other.verify;
    }
};

/// The usual form of a SHA-256 fingerprint, 32 pairs of digits in upper case with colons between them. Takes them in
/// any case, with or without colons; nothing for another text.
std::optional<std::string> NormalFingerprint(const std::string& text);

} // namespace cimhttp
