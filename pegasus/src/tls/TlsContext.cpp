#include "tls/TlsContext.h"

#include "tls/ClientCertificate.h"
#include "tls/OpenSslErrors.h"
#include "tls/PeerCheck.h"
#include "tls/TrustStore.h"

#include <Pegasus/Common/Exception.h>

#include <openssl/err.h>
#include <openssl/rand.h>

#include <string>

namespace Pegasus::tls {

namespace {

constexpr long kRandomBytes = 1024; // enough of a file that may be a device without end

void loadRandomFile(const std::string& path) {
    if (RAND_load_file(path.c_str(), kRandomBytes) < 0) {
        throw SSLException(String("cannot read the random file " + path + ": " + takeOpenSslError()));
    }
}

void loadFiles(SSL_CTX& context, const SSLContext& settings) {
    if (const std::string trustStore(settings.getTrustStore().view()); !trustStore.empty()) {
        loadTrustStore(context, trustStore);
    }
    const std::string keyPath(settings.getKeyPath().view());
    if (const std::string certPath(settings.getCertPath().view()); !certPath.empty()) {
        loadClientCertificate(context, certPath, keyPath);
    } else if (!keyPath.empty()) {
        throw SSLException(String("there is a key of the client's, " + keyPath + ", and no certificate"));
    }
    if (const std::string randomFile(settings.getRandomFile().view()); !randomFile.empty()) {
        loadRandomFile(randomFile);
    }
}

OpenSslContextPtr makeContext(const SSLContext& settings) {
    ERR_clear_error(); // what others left in this thread
    OpenSslContextPtr context(SSL_CTX_new(TLS_client_method()));
    if (!context || SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION) != 1) {
        throw SSLException(String("cannot set up TLS: " + takeOpenSslError()));
    }
    SSL_CTX_set_options(context.get(), SSL_OP_NO_RENEGOTIATION); // the peer is checked once, in the handshake
    SSL_CTX_set_mode(context.get(), SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_RELEASE_BUFFERS);
    SSL_CTX_set_read_ahead(context.get(), 1); // a record with its header, or several, by one call of the system
    PeerCheck::useFor(*context);
    SessionCache::useFor(*context);
    loadFiles(*context, settings);
    return context;
}

std::optional<Fingerprint> fingerprintOf(const SSLContext& settings) {
    const String& text = settings.getPeerFingerprint();
    return text.empty() ? std::nullopt : std::make_optional(Fingerprint::parse(text.view()));
}

} // namespace

TlsContext::TlsContext(const SSLContext& settings)
    : settings_(settings), fingerprint_(fingerprintOf(settings)), openSsl_(makeContext(settings)) {}

} // namespace Pegasus::tls
