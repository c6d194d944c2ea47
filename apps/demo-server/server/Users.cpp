#include "server/Users.h"

#include "schema/Names.h"

#include <crypt.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <utility>

namespace demo {

namespace {

constexpr std::string_view kScheme = "Basic ";
constexpr char kHashMark = '$';

using Digest = std::array<unsigned char, EVP_MAX_MD_SIZE>;

Digest Sha256(const std::string& text) {
    Digest digest{};
    EVP_Digest(text.data(), text.size(), digest.data(), nullptr, EVP_sha256(), nullptr);
    return digest;
}

/// Digests are of one length, so that not even the length of a text shows in the time.
bool AreEqual(const std::string& a, const std::string& b) {
    const Digest left = Sha256(a);
    const Digest right = Sha256(b);
    return CRYPTO_memcmp(left.data(), right.data(), left.size()) == 0;
}

/// The password in the form of a hash that is there; empty if it is no hash that the system knows.
std::string Hashed(const std::string& password, const std::string& hash) {
    // For crypt_r, a text ends at its first null character.
    if (password.find('\0') != std::string::npos)
        return "";
    crypt_data data{};
    const char* const result = ::crypt_r(password.c_str(), hash.c_str(), &data);
    return result && *result != '*' ? result : "";
}

/// Nothing if the text is not Base64 (RFC 4648).
std::optional<std::string> FromBase64(std::string_view text) {
    if (text.empty() || text.size() % 4 != 0)
        return std::nullopt;
    std::string result(text.size() / 4 * 3, '\0');
    const int length =
        EVP_DecodeBlock(reinterpret_cast<unsigned char*>(result.data()),
                        reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    if (length < 0)
        return std::nullopt;
    // EVP_DecodeBlock counts what the padding stands for.
    const auto padding = text.size() - 1 - text.find_last_not_of('=');
    if (padding > 2)
        return std::nullopt;
    result.resize(static_cast<std::size_t>(length) - padding);
    return result;
}

bool IsControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }

} // namespace

Users Users::Read(std::istream& lines, const std::string& source) {
    Users users;
    std::size_t number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        try {
            users.AddLine(line);
        } catch (const UsersError& error) {
            throw UsersError(source + ':' + std::to_string(number) + ": " + error.what());
        }
    }
    if (users.IsEmpty())
        throw UsersError(source + ": no users; a line for each is needed, name:password");
    return users;
}

void Users::AddLine(const std::string& line) {
    if (line.empty() || line.front() == '#')
        return;
    if (std::any_of(line.begin(), line.end(), IsControl))
        throw UsersError("a control character, such as a tab or the end of a line of another system");
    const auto colon = line.find(':');
    if (colon == std::string::npos)
        throw UsersError("no colon; a line must be name:password");
    const std::string name = line.substr(0, colon);
    Secret secret{line.substr(colon + 1), line.substr(colon + 1, 1) == std::string(1, kHashMark)};
    if (name.empty())
        throw UsersError("no name in front of the colon");
    if (secret.text.empty())
        throw UsersError("no password behind the colon");
    if (secret.isHash && Hashed("", secret.text).size() != secret.text.size())
        throw UsersError("the password begins with $ but is no hash of crypt(5); make one with: openssl passwd -6");
    if (!users_.emplace(name, std::move(secret)).second)
        throw UsersError("user " + name + " is there already");
}

void Users::Add(const std::string& name, const std::string& password) { users_[name] = {password, false}; }

std::optional<std::string> Users::Authenticate(std::string_view authorization) const {
    if (!SameName(authorization.substr(0, kScheme.size()), kScheme))
        return std::nullopt;
    const auto given = FromBase64(authorization.substr(kScheme.size()));
    const auto colon = given ? given->find(':') : std::string::npos;
    if (colon == std::string::npos)
        return std::nullopt;
    std::string name = given->substr(0, colon);
    const auto found = users_.find(name);
    if (found == users_.end() || !Matches(found->second, given->substr(colon + 1)))
        return std::nullopt;
    return name;
}

bool Users::Matches(const Secret& secret, const std::string& password) {
    if (!secret.isHash)
        return AreEqual(secret.text, password);
    const std::string hashed = Hashed(password, secret.text);
    return !hashed.empty() && AreEqual(secret.text, hashed);
}

} // namespace demo
