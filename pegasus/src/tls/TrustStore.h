#pragma once

#include <openssl/types.h>

#include <string>

namespace Pegasus::tls {

/// Trusts the certificates at a path: of a PEM file; or of a folder. In a folder where any file has the hash of a name
/// as its own name (openssl rehash), certificates are looked up by that, and read when they are needed; of any other,
/// all files *.pem, *.crt and *.cer are read. Throws SSLException that names the path when there is no certificate, or
/// something cannot be read.
void loadTrustStore(SSL_CTX& context, const std::string& path);

} // namespace Pegasus::tls
