#include "server/TlsContext.h"

#include "server/PemFile.h"

#include <openssl/err.h>
#include <openssl/ssl.h>

#include <algorithm>
#include <stdexcept>

namespace demo {

namespace {

constexpr unsigned char kSessionContext[] = "demo-server";

/// What OpenSSL says of its last failure. Empties its queue of errors.
std::string TakeReason() {
    const char* const reason = ERR_reason_error_string(ERR_peek_last_error());
    ERR_clear_error();
    return reason ? reason : "no reason given";
}

/// Takes the certificate, with those that lead from it to its authority.
bool Use(SSL_CTX* context, const Certificate& certificate) {
    const auto& all = certificate.WithChain();
    return SSL_CTX_use_certificate(context, all.front().get()) == 1 &&
           SSL_CTX_use_PrivateKey(context, certificate.Key()) == 1 &&
           std::all_of(all.begin() + 1, all.end(),
                       [&](const auto& link) { return SSL_CTX_add1_chain_cert(context, link.get()) == 1; });
}

} // namespace

TlsContext::TlsContext(const Certificate& certificate, const std::string& clientAuthorities)
    : context_(SSL_CTX_new(TLS_server_method())) {
    if (!context_ || SSL_CTX_set_min_proto_version(context_.get(), TLS1_2_VERSION) != 1) {
        throw std::runtime_error("OpenSSL fails: " + TakeReason());
    }
    if (!Use(context_.get(), certificate)) {
        throw std::runtime_error("OpenSSL does not take " + certificate.Origin() + ": " + TakeReason());
    }
    if (!clientAuthorities.empty()) {
        DemandCertificates(clientAuthorities);
    }
}

void TlsContext::DemandCertificates(const std::string& clientAuthorities) {
    const std::unique_ptr<X509_STORE, decltype(&X509_STORE_free)> store(X509_STORE_new(), &X509_STORE_free);
    bool isDone = store != nullptr;
    for (const auto& authority : PemFile(clientAuthorities).Certificates()) {
        // The names go to the clients, so that they can choose a certificate.
        isDone = isDone && X509_STORE_add_cert(store.get(), authority.get()) == 1 &&
                 SSL_CTX_add_client_CA(context_.get(), authority.get()) == 1;
    }
    // One that another has signed is trusted no less than one that has signed itself.
    isDone = isDone && X509_STORE_set_flags(store.get(), X509_V_FLAG_PARTIAL_CHAIN) == 1 &&
             SSL_CTX_set1_verify_cert_store(context_.get(), store.get()) == 1 &&
             // Without a name of their own, sessions of verified clients are not resumed.
             SSL_CTX_set_session_id_context(context_.get(), kSessionContext, sizeof(kSessionContext) - 1) == 1;
    if (!isDone) {
        throw std::runtime_error("OpenSSL does not take " + clientAuthorities + ": " + TakeReason());
    }
    SSL_CTX_set_verify(context_.get(), SSL_VERIFY_PEER | SSL_VERIFY_FAIL_IF_NO_PEER_CERT, nullptr);
}

void TlsContext::Free::operator()(ssl_ctx_st* context) const { SSL_CTX_free(context); }

} // namespace demo
