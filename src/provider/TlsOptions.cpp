#include "provider/TlsOptions.h"

#if __has_include(<Pegasus/Client/PeerCertificate.h>)
#define CIMHTTP_HAS_PEER_VERIFICATION 1
#endif

#include "cimhttp/ContextKeys.h"
#include "convert/RemoteText.h"

namespace NQORVYX20 {

namespace {

// No callback is set: the client then encrypts without verifying the server's certificate, unless something else asks
// for that.
constexpr Pegasus::SSLCertificateVerifyFunction* pegCallbackSSL = nullptr;

Pegasus::String TextUnder(const ConnectionOptions& options, const char* key) {
    return ToRemoteText(options.Text(key).value_or(""));
}

} // namespace

#ifdef CIMHTTP_HAS_PEER_VERIFICATION

std::string UnsupportedIn(const ConnectionOptions& /*options*/) { return {}; }

Pegasus::SSLContext SslContextOf(const ConnectionOptions& options) {
    Pegasus::SSLContext context(TextUnder(options, kTrustKey), TextUnder(options, kClientCertificateKey),
                                TextUnder(options, kClientKeyKey), pegCallbackSSL);
    context.setPeerFingerprint(TextUnder(options, kFingerprintKey));
    return context;
}

#else

std::string UnsupportedIn(const ConnectionOptions& options) {
    const std::string library = " cannot be kept: the client library that this plug-in was built with ";
    if (options.Has(kFingerprintKey)) {
        return kFingerprintKey + library + "knows no fingerprints";
    }
    if (options.Has(kTrustKey)) {
        return kTrustKey + library + "does not compare certificates with the names of hosts";
    }
    return {};
}

Pegasus::SSLContext SslContextOf(const ConnectionOptions& options) {
    if (!options.Has(kClientCertificateKey)) {
        return Pegasus::SSLContext(Pegasus::String::EMPTY, pegCallbackSSL, Pegasus::String::EMPTY);
    }
    return Pegasus::SSLContext(Pegasus::String::EMPTY, TextUnder(options, kClientCertificateKey),
                               TextUnder(options, kClientKeyKey), pegCallbackSSL, Pegasus::String::EMPTY);
}

#endif

} // namespace NQORVYX20
