#include "support/TestCertificate.h"

#include <arpa/inet.h>
#include <cstdio>
#include <memory>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>
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
using KeyPtr = std::unique_ptr<EVP_PKEY, Freeing<&EVP_PKEY_free>>;
using CertificatePtr = std::unique_ptr<X509, Freeing<&X509_free>>;
using ExtensionPtr = std::unique_ptr<X509_EXTENSION, Freeing<&X509_EXTENSION_free>>;
using FilePtr = std::unique_ptr<std::FILE, Freeing<&std::fclose>>;

constexpr long kDay = 24L * 60 * 60;

void Check(bool success, const char* what) {
    if (!success) {
        throw std::runtime_error(std::string("cannot make a test certificate: ") + what);
    }
}

KeyPtr NewKey() {
    KeyPtr key(EVP_EC_gen("P-256"));
    Check(key != nullptr, "key");
    return key;
}

void AddExtension(X509& certificate, X509& issuer, int kind, const std::string& value) {
    X509V3_CTX context;
    X509V3_set_ctx(&context, &issuer, &certificate, nullptr, nullptr, 0);
    const ExtensionPtr extension(X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str()));
    Check(extension != nullptr, value.c_str());
    Check(X509_add_ext(&certificate, extension.get(), -1) == 1, value.c_str());
}

CertificatePtr NewCertificate(const std::string& common_name, EVP_PKEY& key, long not_before, long not_after) {
    CertificatePtr certificate(X509_new());
    Check(certificate != nullptr, "memory");
    X509_set_version(certificate.get(), X509_VERSION_3);
    unsigned serial = 0;
    Check(RAND_bytes(reinterpret_cast<unsigned char*>(&serial), sizeof serial) == 1, "serial number");
    ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate.get()), serial);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), not_before);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), not_after);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char*>(common_name.c_str()), -1, -1, 0);
    Check(X509_set_pubkey(certificate.get(), &key) == 1, "public key");
    return certificate;
}

void Sign(X509& certificate, X509& issuer, EVP_PKEY& issuer_key) {
    X509_set_issuer_name(&certificate, X509_get_subject_name(&issuer));
    Check(X509_sign(&certificate, &issuer_key, EVP_sha256()) > 0, "signature");
}

CertificatePtr NewAuthority(EVP_PKEY& key) {
    CertificatePtr authority = NewCertificate("cimhttp test authority", key, -2 * kDay, 2 * kDay);
    AddExtension(*authority, *authority, NID_basic_constraints, "critical,CA:TRUE");
    AddExtension(*authority, *authority, NID_key_usage, "critical,keyCertSign,cRLSign");
    AddExtension(*authority, *authority, NID_subject_key_identifier, "hash");
    Sign(*authority, *authority, key);
    return authority;
}

std::string AlternativeNames(const TestCertificate::Options& options) {
    std::string names;
    for (const std::string& name : options.dns_names) {
        names += (names.empty() ? "DNS:" : ",DNS:") + name;
    }
    for (const std::string& address : options.ip_addresses) {
        names += (names.empty() ? "IP:" : ",IP:") + address;
    }
    return names;
}

FilePtr OpenForWriting(const std::string& path) {
    FilePtr file(std::fopen(path.c_str(), "w"));
    Check(file != nullptr, path.c_str());
    return file;
}

void WriteCertificate(const std::string& path, X509& certificate) {
    Check(PEM_write_X509(OpenForWriting(path).get(), &certificate) == 1, path.c_str());
}

void WriteKey(const std::string& path, EVP_PKEY& key) {
    Check(PEM_write_PrivateKey(OpenForWriting(path).get(), &key, nullptr, nullptr, 0, nullptr, nullptr) == 1,
          path.c_str());
}

bool IsAddress(const std::string& text) {
    in6_addr ignored{};
    return ::inet_pton(AF_INET, text.c_str(), &ignored) == 1 || ::inet_pton(AF_INET6, text.c_str(), &ignored) == 1;
}

} // namespace

TestCertificate::Options TestCertificate::For(const std::string& host_or_address) {
    Options options;
    (IsAddress(host_or_address) ? options.ip_addresses : options.dns_names).push_back(host_or_address);
    return options;
}

TestCertificate::TestCertificate(const Options& options) {
    const KeyPtr authority_key = NewKey();
    const CertificatePtr authority = NewAuthority(*authority_key);
    const KeyPtr key = NewKey();
    const CertificatePtr certificate = NewCertificate(
        options.common_name, *key, options.not_yet_valid ? kDay : -2 * kDay, options.expired ? -kDay : 2 * kDay);
    X509& issuer = options.self_signed ? *certificate : *authority;
    AddExtension(*certificate, issuer, NID_basic_constraints, "CA:FALSE");
    if (const std::string names = AlternativeNames(options); !names.empty()) {
        AddExtension(*certificate, issuer, NID_subject_alt_name, names);
    }
    Sign(*certificate, issuer, options.self_signed ? *key : *authority_key);

    WriteCertificate(CaFile(), *authority);
    WriteCertificate(CertificateFile(), *certificate);
    WriteKey(KeyFile(), *key);
    std::filesystem::create_directory(CaDirectory());
    char hash[16];
    std::snprintf(hash, sizeof hash, "%08lx.0",
                  X509_NAME_hash_ex(X509_get_subject_name(authority.get()), nullptr, nullptr, nullptr));
    WriteCertificate(CaDirectory() + '/' + hash, *authority);
}

} // namespace support
