#include "server/Credentials.h"

#include "schema/Names.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>

namespace demo {

namespace {

constexpr std::string_view kScheme = "Basic ";

std::string Base64(const std::string& text) {
    std::string result(4 * ((text.size() + 2) / 3) + 1, '\0');
    const int length =
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(result.data()),
                        reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    result.resize(static_cast<std::size_t>(length));
    return result;
}

} // namespace

Credentials::Credentials(const std::string& user, const std::string& password)
    : expected_(Base64(user + ':' + password)) {}

bool Credentials::Accept(std::string_view authorization) const {
    if (!SameName(authorization.substr(0, kScheme.size()), kScheme))
        return false;
    authorization.remove_prefix(kScheme.size());
    return authorization.size() == expected_.size() &&
           CRYPTO_memcmp(authorization.data(), expected_.data(), expected_.size()) == 0;
}

} // namespace demo
