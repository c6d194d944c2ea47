#include "tls/ClientCertificate.h"

#include "tls/OpenSslErrors.h"
#include "tls/PemFile.h"

#include <Pegasus/Common/Exception.h>

#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>

namespace Pegasus::tls {

namespace {

constexpr const char* kCertificate = "the client's certificate";
constexpr const char* kKey = "the key of the client's certificate";

[[noreturn]] void fail(const PemFile& file, const std::string& why) {
    throw SSLException(String("cannot use " + file.text() + ": " + why));
}

/// The next one of a file; none at its end.
CertificatePtr nextCertificate(BIO& content, const PemFile& file) {
    CertificatePtr certificate(PEM_read_bio_X509(&content, nullptr, &PemFile::refusePassphrase, nullptr));
    if (!certificate && ERR_GET_REASON(ERR_peek_last_error()) != PEM_R_NO_START_LINE) {
        file.failReading(takeOpenSslError());
    }
    ERR_clear_error();
    return certificate;
}

void useCertificates(SSL_CTX& context, const PemFile& file) {
    const BioPtr content = file.open();
    CertificatePtr certificate = nextCertificate(*content, file);
    if (!certificate) {
        fail(file, "it holds no certificate");
    }
    bool isTaken = SSL_CTX_use_certificate(&context, certificate.get()) == 1;
    while (isTaken && (certificate = nextCertificate(*content, file))) {
        isTaken = SSL_CTX_add1_chain_cert(&context, certificate.get()) == 1;
    }
    if (!isTaken) {
        fail(file, takeOpenSslError());
    }
}

KeyPtr readKey(const PemFile& file) {
    bool isEncrypted = false;
    KeyPtr key(PEM_read_bio_PrivateKey(file.open().get(), nullptr, &PemFile::refusePassphrase, &isEncrypted));
    ERR_clear_error(); // it goes through many forms of keys, and says of each that it is not there
    if (!key) {
        fail(file, isEncrypted ? "it is encrypted with a passphrase" : "it holds no key that can be read");
    }
    return key;
}

void useKey(SSL_CTX& context, const PemFile& file, const PemFile& certificate) {
    const KeyPtr key = readKey(file);
    if (X509_check_private_key(SSL_CTX_get0_certificate(&context), key.get()) != 1) {
        ERR_clear_error();
        fail(file, "it does not belong to " + certificate.text());
    }
    if (SSL_CTX_use_PrivateKey(&context, key.get()) != 1) {
        fail(file, takeOpenSslError());
    }
}

} // namespace

void loadClientCertificate(SSL_CTX& context, const std::string& certPath, const std::string& keyPath) {
    const PemFile certificate(kCertificate, certPath);
    ERR_clear_error();
    useCertificates(context, certificate);
    useKey(context, PemFile(kKey, keyPath.empty() ? certPath : keyPath), certificate);
}

} // namespace Pegasus::tls
