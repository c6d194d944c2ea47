#include "server/Certificate.h"

#include <openssl/bn.h>
#include <openssl/ec.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <arpa/inet.h>
#include <netinet/in.h>

#include <memory>
#include <stdexcept>
#include <utility>

namespace demo {

namespace {

constexpr long kSecondsPerDay = 24L * 60 * 60;
constexpr long kValiditySeconds = 365 * kSecondsPerDay;
constexpr int kSerialBits = 127;
constexpr long kVersion3 = 2;

void Check(bool done) {
    if (!done) {
        throw std::runtime_error("the certificate for HTTPS could not be made");
    }
}

bool IsIpAddress(const std::string& address) {
    in6_addr binary{};
    return inet_pton(AF_INET, address.c_str(), &binary) == 1 || inet_pton(AF_INET6, address.c_str(), &binary) == 1;
}

void AddExtension(X509* certificate, int id, const std::string& value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    const std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> extension(
        X509V3_EXT_conf_nid(nullptr, &context, id, value.c_str()), &X509_EXTENSION_free);
    Check(extension && X509_add_ext(certificate, extension.get(), -1) == 1);
}

void SetSerialNumber(X509* certificate) {
    const std::unique_ptr<BIGNUM, decltype(&BN_free)> number(BN_new(), &BN_free);
    Check(number && BN_rand(number.get(), kSerialBits, BN_RAND_TOP_ANY, BN_RAND_BOTTOM_ANY) == 1);
    Check(BN_to_ASN1_INTEGER(number.get(), X509_get_serialNumber(certificate)) != nullptr);
}

} // namespace

Certificate::Certificate(const std::string& address)
    : key_(EVP_EC_gen("P-256")), origin_("the certificate made for HTTPS") {
    certificates_.emplace_back(X509_new());
    X509* const certificate = certificates_.front().get();
    Check(key_ && certificate);
    Check(X509_set_version(certificate, kVersion3) == 1);
    SetSerialNumber(certificate);
    // A clock that is a little behind the server's does not make the certificate invalid.
    Check(X509_gmtime_adj(X509_getm_notBefore(certificate), -kSecondsPerDay) != nullptr);
    Check(X509_gmtime_adj(X509_getm_notAfter(certificate), kValiditySeconds) != nullptr);

    X509_NAME* const name = X509_get_subject_name(certificate);
    Check(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8, reinterpret_cast<const unsigned char*>("demo-server"),
                                     -1, -1, 0) == 1);
    Check(X509_set_issuer_name(certificate, name) == 1);
    AddExtension(certificate, NID_basic_constraints, "critical,CA:TRUE");
    AddExtension(certificate, NID_subject_alt_name,
                 (IsIpAddress(address) ? "IP:" : "DNS:") + address + ",DNS:localhost");
    Check(X509_set_pubkey(certificate, key_.get()) == 1);
    Check(X509_sign(certificate, key_.get(), EVP_sha256()) != 0);
}

Certificate::Certificate(std::vector<X509Pointer> certificates, KeyPointer key, std::string origin)
    : certificates_(std::move(certificates)), key_(std::move(key)), origin_(std::move(origin)) {}

Certificate Certificate::Read(const std::string& file, const std::string& keyFile) {
    auto certificates = PemFile(file).Certificates();
    const std::string& whereTheKeyIs = keyFile.empty() ? file : keyFile;
    KeyPointer key = PemFile(whereTheKeyIs).PrivateKey();
    if (X509_check_private_key(certificates.front().get(), key.get()) != 1) {
        ERR_clear_error();
        throw std::runtime_error("the private key in " + whereTheKeyIs + " is not that of the first certificate in " +
                                 file);
    }
    return {std::move(certificates), std::move(key), "the certificate in " + file};
}

std::string Certificate::Pem() const {
    const std::unique_ptr<BIO, decltype(&BIO_free)> memory(BIO_new(BIO_s_mem()), &BIO_free);
    Check(memory != nullptr);
    for (const auto& certificate : certificates_) {
        Check(PEM_write_bio_X509(memory.get(), certificate.get()) == 1);
    }
    char* text = nullptr;
    const long length = BIO_get_mem_data(memory.get(), &text);
    return {text, static_cast<std::size_t>(length)};
}

} // namespace demo
