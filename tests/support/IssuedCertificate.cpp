#include "support/IssuedCertificate.h"

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/rsa.h>
#include <openssl/x509v3.h>

#include <cstdio>
#include <ctime>
#include <stdexcept>

namespace support {

namespace {

template <auto Free>
struct Freeing {
    template <typename T>
    void operator()(T* object) const {
        Free(object);
    }
};
using ExtensionPtr = std::unique_ptr<X509_EXTENSION, Freeing<&X509_EXTENSION_free>>;
using BioPtr = std::unique_ptr<BIO, Freeing<&BIO_free>>;

constexpr long kDay = 24L * 60 * 60;

void Check(bool success, const std::string& what) {
    if (!success) {
        throw std::runtime_error("cannot make a test certificate: " + what);
    }
}

std::shared_ptr<EVP_PKEY> NewKey(IssuedCertificate::Key kind) {
    EVP_PKEY* const key = kind == IssuedCertificate::Key::kEc ? EVP_EC_gen("P-256") : EVP_RSA_gen(1024);
    Check(key != nullptr, "key");
    return {key, &EVP_PKEY_free};
}

void AddExtension(X509& certificate, X509& issuer, const std::string& name, const std::string& value) {
    X509V3_CTX context;
    X509V3_set_ctx(&context, &issuer, &certificate, nullptr, nullptr, 0);
    // By a number, a name is an extension of one's own, and the value its bytes: see x509v3_config(5).
    const ExtensionPtr extension(X509V3_EXT_conf(nullptr, &context, name.c_str(), value.c_str()));
    Check(extension != nullptr, name + '=' + value);
    Check(X509_add_ext(&certificate, extension.get(), -1) == 1, name);
}

std::shared_ptr<X509> NewCertificate(const IssuedCertificate::Options& options, EVP_PKEY& key) {
    std::shared_ptr<X509> certificate(X509_new(), &X509_free);
    Check(certificate != nullptr, "memory");
    X509_set_version(certificate.get(), X509_VERSION_3);
    unsigned serial = 0;
    Check(RAND_bytes(reinterpret_cast<unsigned char*>(&serial), sizeof serial) == 1, "serial number");
    ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate.get()), serial);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), options.validFromDay * kDay);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), options.validUntilDay * kDay);
    if (!options.commonName.empty()) {
        X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_UTF8,
                                   reinterpret_cast<const unsigned char*>(options.commonName.c_str()), -1, -1, 0);
    }
    Check(X509_set_pubkey(certificate.get(), &key) == 1, "public key");
    return certificate;
}

/// What a function writes.
template <typename Write>
std::string Written(Write write) {
    const BioPtr out(BIO_new(BIO_s_mem()));
    Check(write(out.get()) == 1, "PEM");
    char* text = nullptr;
    const long size = BIO_get_mem_data(out.get(), &text);
    return {text, static_cast<std::size_t>(size)};
}

std::string TimeText(const ASN1_TIME* time) {
    std::tm fields{};
    ASN1_TIME_to_tm(time, &fields);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &fields);
    return text;
}

} // namespace

IssuedCertificate::Options IssuedCertificate::Authority(const std::string& commonName,
                                                        std::vector<std::pair<std::string, std::string>> extensions) {
    Options options;
    options.commonName = commonName;
    options.extensions = {{"basicConstraints", "critical,CA:TRUE"},
                          {"keyUsage", "critical,keyCertSign,cRLSign"},
                          {"subjectKeyIdentifier", "hash"}};
    options.extensions.insert(options.extensions.end(), extensions.begin(), extensions.end());
    return options;
}

IssuedCertificate::IssuedCertificate(const Options& options) : IssuedCertificate(options, nullptr) {}

IssuedCertificate::IssuedCertificate(const Options& options, const IssuedCertificate& issuer)
    : IssuedCertificate(options, &issuer) {}

IssuedCertificate::IssuedCertificate(const Options& options, const IssuedCertificate* issuer)
    : key_(NewKey(options.key)), certificate_(NewCertificate(options, *key_)) {
    const IssuedCertificate& signer = issuer != nullptr ? *issuer : *this;
    for (const auto& [name, value] : options.extensions) {
        AddExtension(*certificate_, *signer.certificate_, name, value);
    }
    X509_set_issuer_name(certificate_.get(), X509_get_subject_name(signer.certificate_.get()));
    const EVP_MD* const digest = EVP_get_digestbyname(options.digest.c_str());
    Check(X509_sign(certificate_.get(), signer.key_.get(), digest) > 0, "signature");
}

std::string IssuedCertificate::Pem() const {
    return Written([this](BIO* out) { return PEM_write_bio_X509(out, certificate_.get()); });
}

std::string IssuedCertificate::KeyPem() const {
    return Written(
        [this](BIO* out) { return PEM_write_bio_PrivateKey(out, key_.get(), nullptr, nullptr, 0, nullptr, nullptr); });
}

std::string IssuedCertificate::EncryptedKeyPem(const std::string& passphrase) const {
    return Written([&](BIO* out) {
        return PEM_write_bio_PKCS8PrivateKey(out, key_.get(), EVP_aes_256_cbc(), passphrase.c_str(),
                                             static_cast<int>(passphrase.size()), nullptr, nullptr);
    });
}

std::string IssuedCertificate::Fingerprint() const {
    unsigned char bytes[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    Check(X509_digest(certificate_.get(), EVP_sha256(), bytes, &size) == 1, "digest");
    std::string text;
    for (unsigned i = 0; i < size; ++i) {
        char pair[4];
        std::snprintf(pair, sizeof pair, "%s%02X", i > 0 ? ":" : "", bytes[i]);
        text += pair;
    }
    return text;
}

std::string IssuedCertificate::ValidUntil() const { return TimeText(X509_get0_notAfter(certificate_.get())); }

std::string IssuedCertificate::ValidFrom() const { return TimeText(X509_get0_notBefore(certificate_.get())); }

std::string IssuedCertificate::HashedName() const {
    char name[16];
    std::snprintf(name, sizeof name, "%08lx.0",
                  X509_NAME_hash_ex(X509_get_subject_name(certificate_.get()), nullptr, nullptr, nullptr));
    return name;
}

} // namespace support
