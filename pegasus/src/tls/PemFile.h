#pragma once

#include "tls/OpenSslObjects.h"

#include <string>

namespace Pegasus::tls {

/// A file with certificates and keys, as text, in memory.
class PemFile {
  public:
    /// Reads the file; `what` is what it is for, such as "the trust store". Throws SSLException that names both when it
    /// cannot be read.
    PemFile(std::string what, std::string path);

    /// What it is for, and its path.
    std::string text() const { return what_ + ' ' + path_; }

    /// The content, to be read from its beginning. The file must outlive it.
    BioPtr open() const;

    /// Throws SSLException: `text` comes after a colon.
    [[noreturn]] void failReading(const std::string& text) const;

    /// Called by OpenSSL, which would otherwise ask for a passphrase on the terminal: gives none, and sets the bool
    /// that `isAsked` points to, if any.
    static int refusePassphrase(char* buffer, int size, int isForWriting, void* isAsked);

  private:
    const std::string what_;
    const std::string path_;
    std::string content_;
};

} // namespace Pegasus::tls
