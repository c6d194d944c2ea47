#include "tls/PeerCheck.h"

#include "tls/CertificateFacts.h"
#include "tls/OpenSslErrors.h"

#include <Pegasus/Common/Exception.h>

#include <openssl/asn1.h>
#include <openssl/ssl.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>

#include <cstdint>
#include <ctime>
#include <string>

namespace Pegasus::tls {

using http::Endpoint;

namespace {

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

/// A time that CIM does not have counts as none, the zero interval.
CIMDateTime dateTimeOf(const ASN1_TIME& time) {
    std::tm parts{};
    CIMDateTime result;
    if (ASN1_TIME_to_tm(&time, &parts) == 1) {
        const auto part = [](int value) { return static_cast<Uint32>(value); };
        try {
            result.setTimeStamp(part(parts.tm_year + 1900), part(parts.tm_mon + 1), part(parts.tm_mday),
                                part(parts.tm_hour), part(parts.tm_min), part(parts.tm_sec), 0, 6, 0);
        } catch (const DateTimeOutOfRangeException&) {
            // a leap second
        }
    }
    return result;
}

SSLCertificateInfo::Facts callbackFacts(const X509& certificate) {
    std::int64_t serial = 0;
    const bool isHeld = ASN1_INTEGER_get_int64(&serial, X509_get0_serialNumber(&certificate)) == 1;
    return {dateTimeOf(*X509_get0_notBefore(&certificate)), dateTimeOf(*X509_get0_notAfter(&certificate)),
            isHeld ? static_cast<long>(serial) : -1L, static_cast<Uint32>(X509_get_version(&certificate) + 1)};
}

} // namespace

PeerCheck::PeerCheck(const SSLContext& settings, const std::optional<Fingerprint>& fingerprint,
                     const Endpoint& endpoint)
    : endpoint_(endpoint),
      verify_(settings.isPeerVerificationEnabled()),
      callback_(settings.getSSLCertificateVerifyFunction()),
      fingerprint_(fingerprint) {}

void PeerCheck::useFor(SSL_CTX& context) { SSL_CTX_set_cert_verify_callback(&context, &PeerCheck::onChain, nullptr); }

void PeerCheck::attachTo(SSL& session) {
    if (!setName(session, endpoint_) || SSL_set_ex_data(&session, sessionIndex(), this) != 1) {
        throw SSLException(String("cannot set up the check of the server's certificate: " + takeOpenSslError()));
    }
    SSL_set_verify(&session, verify_ ? SSL_VERIFY_PEER : SSL_VERIFY_NONE,
                   verify_ ? &PeerCheck::onCertificate : nullptr);
}

PeerCheck& PeerCheck::ofStore(X509_STORE_CTX* store) {
    const auto* session =
        static_cast<const SSL*>(X509_STORE_CTX_get_ex_data(store, SSL_get_ex_data_X509_STORE_CTX_idx()));
    return *static_cast<PeerCheck*>(SSL_get_ex_data(session, sessionIndex()));
}

/// All certificates that the server sends. OpenSSL's own check asks onCertificate() about each.
int PeerCheck::onChain(X509_STORE_CTX* store, void* /*unused*/) {
    PeerCheck& check = ofStore(store);
    if (!check.fingerprint_) {
        return X509_verify_cert(store);
    }
    try {
        return check.acceptFingerprint(*store) ? 1 : 0;
    } catch (...) {
        check.failure_ = std::current_exception();
        return 0;
    }
}

int PeerCheck::onCertificate(int preverified, X509_STORE_CTX* store) {
    PeerCheck& check = ofStore(store);
    try {
        return check.accept(preverified == 1, *store) ? 1 : 0;
    } catch (...) {
        check.failure_ = std::current_exception();
        return 0;
    }
}

bool PeerCheck::acceptFingerprint(X509_STORE_CTX& store) {
    const X509& certificate = *X509_STORE_CTX_get0_cert(&store);
    const bool accepted = Fingerprint::of(certificate) == *fingerprint_;
    X509_STORE_CTX_set_error(&store, accepted ? X509_V_OK : X509_V_ERR_APPLICATION_VERIFICATION);
    if (!accepted) {
        refusal_ = refusalByFingerprint(certificate, *fingerprint_);
    }
    return accepted;
}

bool PeerCheck::accept(bool preverified, X509_STORE_CTX& store) {
    const int error = X509_STORE_CTX_get_error(&store);
    const bool accepted = callback_ != nullptr ? askCallback(preverified, store) : preverified;
    if (accepted) {
        X509_STORE_CTX_set_error(&store, X509_V_OK);
        return true;
    }
    const X509* const current = X509_STORE_CTX_get_current_cert(&store);
    const X509& certificate = *(current != nullptr ? current : X509_STORE_CTX_get0_cert(&store));
    refusal_ = preverified ? refusalByCallback(certificate)
                           : refusalByCheck(error, X509_STORE_CTX_get_error_depth(&store), certificate, endpoint_);
    if (preverified) {
        X509_STORE_CTX_set_error(&store, X509_V_ERR_APPLICATION_VERIFICATION);
    }
    return false;
}

bool PeerCheck::askCallback(bool preverified, X509_STORE_CTX& store) const {
    const X509* certificate = X509_STORE_CTX_get_current_cert(&store);
    const int error = X509_STORE_CTX_get_error(&store);
    SSLCertificateInfo info(certificate != nullptr ? String(slashedName(*X509_get_subject_name(certificate)))
                                                   : String(),
                            certificate != nullptr ? String(slashedName(*X509_get_issuer_name(certificate))) : String(),
                            static_cast<Uint32>(X509_STORE_CTX_get_error_depth(&store)), error,
                            X509_verify_cert_error_string(error), preverified);
    if (certificate != nullptr) {
        info.setFacts(callbackFacts(*certificate));
    }
    return callback_(info);
}

} // namespace Pegasus::tls
