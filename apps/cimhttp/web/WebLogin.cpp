#include "web/WebLogin.h"

#include "PasswordHash.h"
#include "text/Ascii.h"

#include <openssl/evp.h>

#include <array>
#include <optional>

namespace cimhttp {

namespace {

constexpr std::string_view kScheme = "Basic ";

/// More are not remembered, whatever the number of users.
constexpr std::size_t kMostAccepted = 1000;

std::string Sha256(const std::string& text) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned size = 0;
    EVP_Digest(text.data(), text.size(), digest.data(), &size, EVP_sha256(), nullptr);
    return {reinterpret_cast<const char*>(digest.data()), size};
}

std::optional<std::string> FromBase64(const std::string& text) {
    constexpr std::size_t kGroup = 4;
    constexpr std::size_t kMostPadding = 2;
    const std::size_t padding = text.size() - (text.find_last_not_of('=') + 1);
    if (text.empty() || text.size() % kGroup != 0 || padding > kMostPadding) {
        return std::nullopt;
    }
    std::string bytes(text.size(), '\0');
    const int size =
        EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()),
                        reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    if (size < 0) {
        return std::nullopt;
    }
    bytes.resize(static_cast<std::size_t>(size) - padding);
    return bytes;
}

} // namespace

bool WebLogin::Accepts(const std::string& authorization) {
    if (users_.empty()) {
        return true;
    }
    if (!EqualIgnoringCase(std::string_view(authorization).substr(0, kScheme.size()), kScheme)) {
        return false;
    }
    const std::string digest = Sha256(authorization);
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (accepted_.count(digest) > 0) {
            return true;
        }
    }
    const auto credentials = FromBase64(authorization.substr(kScheme.size()));
    if (!credentials || !IsKnown(*credentials)) {
        return false;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    if (accepted_.size() < kMostAccepted) {
        accepted_.insert(digest);
    }
    return true;
}

bool WebLogin::IsKnown(const std::string& credentials) const {
    const std::size_t colon = credentials.find(':');
    if (colon == std::string::npos) {
        return false;
    }
    const auto user = users_.find(credentials.substr(0, colon));
    const bool isUser = user != users_.end();
    const std::string& hash = isUser ? user->second : users_.begin()->second;
    const std::string result = password_hash::HashLike(hash, credentials.substr(colon + 1));
    return password_hash::AreEqualInConstantTime(result, hash) && isUser && !result.empty();
}

} // namespace cimhttp
