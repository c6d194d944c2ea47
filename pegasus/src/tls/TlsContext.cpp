#include "tls/TlsContext.h"

#include <Pegasus/Common/Exception.h>
#include <filesystem>
#include <new>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/rand.h>
#include <openssl/ssl.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>

namespace Pegasus::http {

namespace {

constexpr long kRandomBytes = 1024; // enough of a file that may be a device without end

struct BioFree {
    void operator()(BIO* bio) const { BIO_free(bio); }
};

std::string lastError() {
    const unsigned long code = ERR_peek_last_error();
    const char* reason = ERR_reason_error_string(code);
    ERR_clear_error();
    return reason != nullptr ? reason : "unknown error";
}

void loadTrustStore(SSL_CTX& context, const std::string& path) {
    std::error_code ignored;
    const bool loaded = std::filesystem::is_directory(path, ignored)
                            ? SSL_CTX_load_verify_dir(&context, path.c_str()) == 1
                            : SSL_CTX_load_verify_file(&context, path.c_str()) == 1;
    if (!loaded) {
        throw SSLException(String("cannot read the trust store " + path + ": " + lastError()));
    }
}

void loadRandomFile(const std::string& path) {
    if (RAND_load_file(path.c_str(), kRandomBytes) < 0) {
        throw SSLException(String("cannot read the random file " + path + ": " + lastError()));
    }
}

String nameText(const X509_NAME* name) {
    const std::unique_ptr<BIO, BioFree> out(BIO_new(BIO_s_mem()));
    if (!out) {
        throw std::bad_alloc();
    }
    X509_NAME_print_ex(out.get(), name, 0, XN_FLAG_RFC2253 & ~ASN1_STRFLGS_ESC_MSB);
    char* text = nullptr;
    const long size = BIO_get_mem_data(out.get(), &text);
    return String(std::string_view(text, static_cast<std::size_t>(size)));
}

/// Tells a session which server it is for. An address is no name (RFC 6066, 3), and has no zone in a certificate.
bool setName(SSL& session, const Endpoint& endpoint) {
    X509_VERIFY_PARAM* const parameters = SSL_get0_param(&session);
    const std::string& host = endpoint.host();
    if (endpoint.isAddressLiteral()) {
        return X509_VERIFY_PARAM_set1_ip_asc(parameters, host.substr(0, host.find('%')).c_str()) == 1;
    }
    return X509_VERIFY_PARAM_set1_host(parameters, host.c_str(), 0) == 1 &&
           SSL_set_tlsext_host_name(&session, host.c_str()) == 1;
}

/// Where a session keeps the address of its check.
int sessionIndex() {
    static const int index = SSL_get_ex_new_index(0, nullptr, nullptr, nullptr, nullptr);
    return index;
}

} // namespace

void TlsContextFree::operator()(SSL_CTX* context) const { SSL_CTX_free(context); }

TlsContextPtr makeTlsContext(const SSLContext& settings) {
    ERR_clear_error(); // what others left in this thread
    TlsContextPtr context(SSL_CTX_new(TLS_client_method()));
    if (!context || SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION) != 1) {
        throw SSLException(String("cannot set up TLS: " + lastError()));
    }
    SSL_CTX_set_options(context.get(), SSL_OP_NO_RENEGOTIATION); // the peer is checked once, in the handshake
    SSL_CTX_set_mode(context.get(), SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_RELEASE_BUFFERS);
    SSL_CTX_set_read_ahead(context.get(), 1); // a record with its header, or several, by one call of the system
    if (const std::string trustStore(settings.getTrustStore().view()); !trustStore.empty()) {
        loadTrustStore(*context, trustStore);
    }
    if (const std::string randomFile(settings.getRandomFile().view()); !randomFile.empty()) {
        loadRandomFile(randomFile);
    }
    return context;
}

PeerCheck::PeerCheck(const SSLContext& settings, const Endpoint& endpoint)
    : endpoint_(endpoint),
      verify_(settings.isPeerVerificationEnabled()),
      callback_(settings.getSSLCertificateVerifyFunction()) {}

void PeerCheck::attachTo(SSL& session) {
    if (!setName(session, endpoint_) || SSL_set_ex_data(&session, sessionIndex(), this) != 1) {
        throw SSLException(String("cannot set up the check of the server's certificate: " + lastError()));
    }
    SSL_set_verify(&session, verify_ ? SSL_VERIFY_PEER : SSL_VERIFY_NONE,
                   verify_ ? &PeerCheck::onCertificate : nullptr);
}

int PeerCheck::onCertificate(int preverified, X509_STORE_CTX* store) {
    const auto* session =
        static_cast<const SSL*>(X509_STORE_CTX_get_ex_data(store, SSL_get_ex_data_X509_STORE_CTX_idx()));
    auto* check = static_cast<PeerCheck*>(SSL_get_ex_data(session, sessionIndex()));
    try {
        return check->accept(preverified == 1, *store) ? 1 : 0;
    } catch (...) {
        check->failure_ = std::current_exception();
        return 0;
    }
}

bool PeerCheck::accept(bool preverified, X509_STORE_CTX& store) {
    const int error = X509_STORE_CTX_get_error(&store);
    const bool accepted = callback_ != nullptr ? askCallback(preverified, store) : preverified;
    if (accepted) {
        X509_STORE_CTX_set_error(&store, X509_V_OK);
        return true;
    }
    refusal_ = preverified ? "the verification callback refused it" : X509_verify_cert_error_string(error);
    if (preverified) {
        X509_STORE_CTX_set_error(&store, X509_V_ERR_APPLICATION_VERIFICATION);
    }
    return false;
}

bool PeerCheck::askCallback(bool preverified, X509_STORE_CTX& store) const {
    const X509* certificate = X509_STORE_CTX_get_current_cert(&store);
    const int error = X509_STORE_CTX_get_error(&store);
    SSLCertificateInfo info(certificate != nullptr ? nameText(X509_get_subject_name(certificate)) : String(),
                            certificate != nullptr ? nameText(X509_get_issuer_name(certificate)) : String(),
                            static_cast<Uint32>(X509_STORE_CTX_get_error_depth(&store)), error,
                            X509_verify_cert_error_string(error), preverified);
    return callback_(info);
}

} // namespace Pegasus::http
