#pragma once

#include <openssl/types.h>

#include <string>

namespace Pegasus::tls {

/// Gives the context a certificate of the client's own, with the chain that follows it in its PEM file, and its key,
/// which is in the same file where `keyPath` is empty. Throws an SSLException that names the file when that fails.
void loadClientCertificate(SSL_CTX& context, const std::string& certPath, const std::string& keyPath);

} // namespace Pegasus::tls
