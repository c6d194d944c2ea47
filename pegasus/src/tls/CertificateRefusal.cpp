#include "tls/CertificateRefusal.h"

#include "text/Utf8.h"
#include "tls/CertificateFacts.h"

#include <openssl/evp.h>
#include <openssl/objects.h>
#include <openssl/x509.h>
#include <openssl/x509_vfy.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace Pegasus::tls {

using http::Endpoint;

namespace {

using Reason = CertificateRefused::Reason;

// What the server claims may be long; a message has this much of it.
constexpr std::size_t kMaxNameBytes = 200;
constexpr Uint32 kMaxNames = 8;

std::string shortened(const String& text) {
    const std::string_view shown = text::beginningOf(text.view(), kMaxNameBytes);
    return std::string(shown) + (shown.size() == text.view().size() ? "" : "...");
}

std::string listed(const Array<String>& names) {
    std::string list;
    for (Uint32 i = 0; i < std::min(names.size(), kMaxNames); ++i) {
        list += (i > 0 ? ", " : "") + shortened(names[i]);
    }
    return names.size() > kMaxNames ? list + " and " + std::to_string(names.size() - kMaxNames) + " more" : list;
}

/// A certificate at fault, as sentences speak of it.
class Culprit {
  public:
    Culprit(const X509& certificate, int depth, const Endpoint& endpoint)
        : certificate_(certificate), facts_(factsOf(certificate)), isServers_(depth == 0), endpoint_(endpoint) {}

    const PeerCertificate& facts() const { return facts_; }

    std::string expired() const { return subject() + " expired on " + shortened(facts_.validUntil); }
    std::string isNotYetValid() const { return subject() + " is not valid before " + shortened(facts_.validFrom); }
    std::string isSelfSigned() const { return subject() + " is signed by itself and not among the trusted ones"; }
    std::string isNotForServers() const { return subject() + " is not meant for servers"; }
    std::string isNoAuthority() const { return subject() + " is not meant to sign others"; }
    std::string signsTooDeep() const { return subject() + " is not meant to sign so long a chain"; }
    std::string isNotTrusted() const { return subject() + " is not trusted for servers"; }
    std::string breaksConstraints() const { return subject() + " has names that an authority above may not sign"; }

    std::string hasUnknownIssuer() const {
        return (isServers_ ? "its issuer " : "the issuer of " + shortened(facts_.subject) + ", ") +
               shortened(facts_.issuer) + (isServers_ ? " is not trusted" : ", is not trusted");
    }

    std::string isNotSignedByIssuer() const {
        return "certificate signature failure: the trusted " + shortened(facts_.issuer) + " has not signed " +
               (isServers_ ? "it" : shortened(facts_.subject));
    }

    std::string hasWeakKey() const {
        const EVP_PKEY* const key = X509_get0_pubkey(&certificate_);
        const char* const kind = key != nullptr ? EVP_PKEY_get0_type_name(key) : nullptr;
        return subject() + " has a weak key" +
               (kind != nullptr ? ": " + std::to_string(EVP_PKEY_get_bits(key)) + " bits of " + kind : "");
    }

    std::string hasWeakSignature() const {
        const char* const algorithm = OBJ_nid2ln(X509_get_signature_nid(&certificate_));
        return subject() + " has a weak signature" +
               (algorithm != nullptr ? std::string(": ") + algorithm : std::string());
    }

    std::string isForOthers() const {
        const std::string& host = endpoint_.host();
        return subject() +
               (facts_.names.size() == 0 ? " names no host and is" : " is for " + listed(facts_.names) + " and") +
               " not for " + host.substr(0, host.find('%'));
    }

  private:
    std::string subject() const { return isServers_ ? "it" : "that of " + shortened(facts_.subject) + " above it"; }

    const X509& certificate_;
    const PeerCertificate facts_;
    const bool isServers_;
    const Endpoint& endpoint_;
};

/// What one of OpenSSL's errors means, and the sentence that has its facts.
struct Meaning {
    int error;
    Reason reason;
    std::string (Culprit::*sentence)() const;
};

constexpr Meaning kMeanings[] = {
    {X509_V_ERR_CERT_HAS_EXPIRED, Reason::EXPIRED, &Culprit::expired},
    {X509_V_ERR_CERT_NOT_YET_VALID, Reason::NOT_YET_VALID, &Culprit::isNotYetValid},
    {X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT, Reason::UNKNOWN_ISSUER, &Culprit::hasUnknownIssuer},
    {X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY, Reason::UNKNOWN_ISSUER, &Culprit::hasUnknownIssuer},
    {X509_V_ERR_UNABLE_TO_VERIFY_LEAF_SIGNATURE, Reason::UNKNOWN_ISSUER, &Culprit::hasUnknownIssuer},
    {X509_V_ERR_CERT_SIGNATURE_FAILURE, Reason::UNKNOWN_ISSUER, &Culprit::isNotSignedByIssuer},
    {X509_V_ERR_CERT_UNTRUSTED, Reason::UNKNOWN_ISSUER, &Culprit::isNotTrusted},
    {X509_V_ERR_CERT_REJECTED, Reason::UNKNOWN_ISSUER, &Culprit::isNotTrusted},
    {X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT, Reason::SELF_SIGNED, &Culprit::isSelfSigned},
    {X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN, Reason::SELF_SIGNED, &Culprit::isSelfSigned},
    {X509_V_ERR_HOSTNAME_MISMATCH, Reason::WRONG_NAME, &Culprit::isForOthers},
    {X509_V_ERR_IP_ADDRESS_MISMATCH, Reason::WRONG_NAME, &Culprit::isForOthers},
    {X509_V_ERR_EE_KEY_TOO_SMALL, Reason::UNSUITABLE, &Culprit::hasWeakKey},
    {X509_V_ERR_CA_KEY_TOO_SMALL, Reason::UNSUITABLE, &Culprit::hasWeakKey},
    {X509_V_ERR_EC_KEY_EXPLICIT_PARAMS, Reason::UNSUITABLE, &Culprit::hasWeakKey},
    {X509_V_ERR_CA_MD_TOO_WEAK, Reason::UNSUITABLE, &Culprit::hasWeakSignature},
    {X509_V_ERR_INVALID_PURPOSE, Reason::UNSUITABLE, &Culprit::isNotForServers},
    {X509_V_ERR_INVALID_CA, Reason::UNSUITABLE, &Culprit::isNoAuthority},
    {X509_V_ERR_KEYUSAGE_NO_CERTSIGN, Reason::UNSUITABLE, &Culprit::isNoAuthority},
    {X509_V_ERR_PATH_LENGTH_EXCEEDED, Reason::UNSUITABLE, &Culprit::signsTooDeep},
    {X509_V_ERR_PERMITTED_VIOLATION, Reason::UNSUITABLE, &Culprit::breaksConstraints},
    {X509_V_ERR_EXCLUDED_VIOLATION, Reason::UNSUITABLE, &Culprit::breaksConstraints},
};

} // namespace

CertificateRefusal refusalByCheck(int error, int depth, const X509& certificate, const Endpoint& endpoint) {
    const Culprit culprit(certificate, depth, endpoint);
    const std::string words = X509_verify_cert_error_string(error);
    const auto* const meaning = std::find_if(std::begin(kMeanings), std::end(kMeanings),
                                             [&](const Meaning& known) { return known.error == error; });
    if (meaning == std::end(kMeanings)) {
        return {{Reason::OTHER, culprit.facts()}, words};
    }
    const std::string text = (culprit.*meaning->sentence)();
    // People search for OpenSSL's own words when they look for help.
    return {{meaning->reason, culprit.facts()},
            text.find(words) == std::string::npos ? text + " (" + words + ')' : text};
}

CertificateRefusal refusalByCallback(const X509& certificate) {
    return {{Reason::OTHER, factsOf(certificate)}, "the verification callback refused it"};
}

CertificateRefusal refusalByFingerprint(const X509& certificate, const Fingerprint& accepted) {
    const PeerCertificate facts = factsOf(certificate);
    return {{Reason::OTHER_FINGERPRINT, facts},
            "its fingerprint is " + std::string(facts.fingerprint.view()) + " and not " + accepted.text()};
}

} // namespace Pegasus::tls
