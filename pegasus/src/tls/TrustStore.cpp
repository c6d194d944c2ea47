#include "tls/TrustStore.h"

#include "tls/OpenSslErrors.h"
#include "tls/PemFile.h"

#include <Pegasus/Common/Exception.h>

#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509_vfy.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace Pegasus::tls {

namespace {

constexpr const char* kTrustStore = "the trust store";
constexpr std::size_t kHashDigits = 8;

void freeAll(STACK_OF(X509_INFO) * items) { sk_X509_INFO_pop_free(items, &X509_INFO_free); }
using PemItems = std::unique_ptr<STACK_OF(X509_INFO), Freeing<&freeAll>>;

std::vector<CertificatePtr> certificatesOf(const std::string& path) {
    const PemFile file(kTrustStore, path);
    ERR_clear_error();
    const PemItems items(PEM_X509_INFO_read_bio(file.open().get(), nullptr, &PemFile::refusePassphrase, nullptr));
    if (!items) {
        file.failReading(takeOpenSslError());
    }
    std::vector<CertificatePtr> certificates;
    for (int i = 0; i < sk_X509_INFO_num(items.get()); ++i) {
        if (X509* const certificate = sk_X509_INFO_value(items.get(), i)->x509; certificate != nullptr) {
            X509_up_ref(certificate);
            CertificatePtr owner(certificate);
            certificates.push_back(std::move(owner));
        }
    }
    return certificates;
}

bool holdsCertificate(const std::filesystem::path& path) { return !certificatesOf(path.string()).empty(); }

/// False when there is none.
bool addCertificatesOf(const std::filesystem::path& path, X509_STORE& store) {
    const std::vector<CertificatePtr> certificates = certificatesOf(path.string());
    for (const CertificatePtr& certificate : certificates) {
        if (X509_STORE_add_cert(&store, certificate.get()) != 1) {
            throw SSLException(String("cannot use the trust store " + path.string() + ": " + takeOpenSslError()));
        }
    }
    return !certificates.empty();
}

bool areAll(std::string_view text, const char* characters) {
    return !text.empty() && text.find_first_not_of(characters) == std::string_view::npos;
}

/// As openssl rehash names files: a hash, a dot and a number.
bool isHashedName(const std::filesystem::path& path) {
    const std::string name = path.filename().string();
    const std::string_view view(name);
    return view.size() > kHashDigits + 1 && view[kHashDigits] == '.' &&
           areAll(view.substr(0, kHashDigits), "0123456789abcdef") &&
           areAll(view.substr(kHashDigits + 1), "0123456789");
}

bool isPemName(const std::filesystem::path& path) {
    const auto extension = path.extension();
    return extension == ".pem" || extension == ".crt" || extension == ".cer";
}

/// In the order of their names, so that the same folder always means the same.
std::vector<std::filesystem::path> filesIn(const std::string& folder, bool (*isWanted)(const std::filesystem::path&)) {
    std::error_code error;
    std::vector<std::filesystem::path> files;
    for (std::filesystem::directory_iterator entry(folder, error); !error && entry != end(entry);
         entry.increment(error)) {
        if (isWanted(entry->path())) {
            files.push_back(entry->path());
        }
    }
    if (error) {
        throw SSLException(String("cannot read the trust store " + folder + ": " + error.message()));
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// False when the folder holds no certificate.
bool loadFolder(SSL_CTX& context, const std::string& folder) {
    if (const auto hashed = filesIn(folder, &isHashedName); !hashed.empty()) {
        return std::any_of(hashed.begin(), hashed.end(), &holdsCertificate) &&
               SSL_CTX_load_verify_dir(&context, folder.c_str()) == 1;
    }
    const auto files = filesIn(folder, &isPemName);
    X509_STORE& store = *SSL_CTX_get_cert_store(&context);
    return std::count_if(files.begin(), files.end(), [&](const auto& file) { return addCertificatesOf(file, store); }) >
           0;
}

} // namespace

void loadTrustStore(SSL_CTX& context, const std::string& path) {
    std::error_code ignored;
    const bool holdsAny = std::filesystem::is_directory(path, ignored)
                              ? loadFolder(context, path)
                              : addCertificatesOf(path, *SSL_CTX_get_cert_store(&context));
    if (!holdsAny) {
        throw SSLException(String("cannot use the trust store " + path + ": it holds no certificate"));
    }
}

} // namespace Pegasus::tls
