#include "PasswordHash.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <crypt.h>

#include <array>

namespace password_hash {

namespace {

using Digest = std::array<unsigned char, EVP_MAX_MD_SIZE>;

Digest Sha256(const std::string& text) {
    Digest digest{};
    EVP_Digest(text.data(), text.size(), digest.data(), nullptr, EVP_sha256(), nullptr);
    return digest;
}

} // namespace

std::string HashLike(const std::string& hash, const std::string& password) {
    // For crypt_r, a text ends at its first null character.
    if (password.find('\0') != std::string::npos) {
        return "";
    }
    crypt_data data{};
    const char* const result = ::crypt_r(password.c_str(), hash.c_str(), &data);
    return result && *result != '*' ? result : "";
}

bool AreEqualInConstantTime(const std::string& a, const std::string& b) {
    const Digest left = Sha256(a);
    const Digest right = Sha256(b);
    return CRYPTO_memcmp(left.data(), right.data(), left.size()) == 0;
}

} // namespace password_hash
