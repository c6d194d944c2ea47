#include "server/Users.h"

#include "schema/Names.h"

#include <openssl/evp.h>

#include <algorithm>
#include <utility>

namespace demo {

namespace {

constexpr std::string_view kScheme = "Basic ";
constexpr char kHashMark = '$';

/// Nothing if the text is not Base64 (RFC 4648).
std::optional<std::string> FromBase64(std::string_view text) {
    if (text.empty() || text.size() % 4 != 0) {
        return std::nullopt;
    }
    std::string result(text.size() / 4 * 3, '\0');
    const int length =
        EVP_DecodeBlock(reinterpret_cast<unsigned char*>(result.data()),
                        reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    if (length < 0) {
        return std::nullopt;
    }
    // EVP_DecodeBlock counts what the padding stands for.
    const auto padding = text.size() - 1 - text.find_last_not_of('=');
    if (padding > 2) {
        return std::nullopt;
    }
    result.resize(static_cast<std::size_t>(length) - padding);
    return result;
}

bool IsControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }

} // namespace

const Users::Secret Users::kNobody;

Users Users::Read(std::istream& lines, const std::string& source, PasswordHash hash) {
    Users users(std::move(hash));
    std::size_t number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        try {
            users.AddLine(line);
        } catch (const UsersError& error) {
            throw UsersError(source + ':' + std::to_string(number) + ": " + error.what());
        }
    }
    if (users.IsEmpty()) {
        throw UsersError(source + ": no users; a line for each is needed, name:password");
    }
    return users;
}

void Users::AddLine(const std::string& line) {
    if (line.empty() || line.front() == '#') {
        return;
    }
    if (std::any_of(line.begin(), line.end(), IsControl)) {
        throw UsersError("a control character, such as a tab or the end of a line of another system");
    }
    const auto colon = line.find(':');
    if (colon == std::string::npos) {
        throw UsersError("no colon; a line must be name:password");
    }
    const std::string name = line.substr(0, colon);
    Secret secret{line.substr(colon + 1), line.substr(colon + 1, 1) == std::string(1, kHashMark)};
    if (name.empty()) {
        throw UsersError("no name in front of the colon");
    }
    if (secret.text.empty()) {
        throw UsersError("no password behind the colon");
    }
    if (secret.isHash && hash_(secret.text, "").size() != secret.text.size()) {
        throw UsersError("the password begins with $ but is no hash of crypt(5); make one with: openssl passwd -6");
    }
    if (secret.isHash) {
        anyHash_ = secret.text;
    }
    if (!users_.emplace(name, std::move(secret)).second) {
        throw UsersError("user " + name + " is there already");
    }
}

void Users::Add(const std::string& name, const std::string& password) { users_[name] = {password, false}; }

std::optional<std::string> Users::Authenticate(std::string_view authorization) const {
    if (!SameName(authorization.substr(0, kScheme.size()), kScheme)) {
        return std::nullopt;
    }
    const auto given = FromBase64(authorization.substr(kScheme.size()));
    const auto colon = given ? given->find(':') : std::string::npos;
    if (colon == std::string::npos) {
        return std::nullopt;
    }
    std::string name = given->substr(0, colon);
    const auto found = users_.find(name);
    const bool isRight = Matches(found == users_.end() ? kNobody : found->second, given->substr(colon + 1));
    if (found == users_.end() || !isRight) {
        return std::nullopt;
    }
    return name;
}

/// Hashes as much for each name, so that the time does not tell which names there are.
bool Users::Matches(const Secret& secret, const std::string& password) const {
    const std::string& hash = secret.isHash ? secret.text : anyHash_;
    const std::string hashed = hash.empty() ? "" : hash_(hash, password);
    return password_hash::AreEqualInConstantTime(secret.text, secret.isHash ? hashed : password);
}

} // namespace demo
