#include "server/PemFile.h"

#include <openssl/err.h>
#include <openssl/pem.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace demo {

namespace {

using BioPointer = std::unique_ptr<BIO, decltype(&BIO_free)>;

BioPointer Open(const std::string& text) {
    return {BIO_new_mem_buf(text.data(), static_cast<int>(text.size())), &BIO_free};
}

/// Nobody is asked for the password of a key: a server has to start by itself.
int NoPassword(char* /*buffer*/, int /*size*/, int /*isWriting*/, void* /*data*/) { return -1; }

/// Why the last call of OpenSSL has failed. Empties its queue of errors.
int TakeReason() {
    const unsigned long error = ERR_peek_last_error();
    ERR_clear_error();
    return ERR_GET_LIB(error) == ERR_LIB_PEM ? ERR_GET_REASON(error) : 0;
}

/// Whether PEM has a block of a kind, as in "PRIVATE KEY", which may have words in front.
bool HasBlock(const std::string& text, const std::string& kind) {
    return text.find(kind + "-----") != std::string::npos;
}

} // namespace

PemFile::PemFile(const std::string& name) : name_(name) {
    std::ifstream stream(name);
    std::ostringstream text;
    if (std::filesystem::is_directory(name) || !stream || (text << stream.rdbuf(), stream.bad())) {
        throw std::runtime_error("cannot read " + name);
    }
    text_ = text.str();
}

std::vector<X509Pointer> PemFile::Certificates() const {
    const BioPointer input = Open(text_);
    std::vector<X509Pointer> all;
    while (X509* const certificate = PEM_read_bio_X509(input.get(), nullptr, &NoPassword, nullptr)) {
        all.emplace_back(certificate);
    }
    if (TakeReason() != PEM_R_NO_START_LINE) {
        throw std::runtime_error(name_ + ": certificate " + std::to_string(all.size() + 1) + " in it is damaged");
    }
    if (all.empty()) {
        throw std::runtime_error(name_ + " holds no certificate");
    }
    return all;
}

KeyPointer PemFile::PrivateKey() const {
    if (!HasBlock(text_, "PRIVATE KEY")) {
        throw std::runtime_error(name_ + " holds no private key");
    }
    const BioPointer input = Open(text_);
    KeyPointer key(PEM_read_bio_PrivateKey(input.get(), nullptr, &NoPassword, nullptr));
    if (key) {
        return key;
    }
    if (TakeReason() == PEM_R_BAD_PASSWORD_READ || text_.find("ENCRYPTED") != std::string::npos) {
        throw std::runtime_error("the private key in " + name_ + " is encrypted; openssl pkey -in " + name_ +
                                 " writes it as it has to be");
    }
    throw std::runtime_error("the private key in " + name_ + " is damaged");
}

} // namespace demo
