#pragma once

#include "PasswordHash.h"

#include <functional>
#include <istream>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace demo {

/// A list of users that cannot be used. The text names the file and the line and says what is wrong.
class UsersError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Who may log in, by Basic authentication (RFC 7617). Safe to read from any thread.
class Users {
  public:
    /// password_hash::HashLike(), except in tests.
    using PasswordHash = std::function<std::string(const std::string& hash, const std::string& password)>;

    Users() : Users(password_hash::HashLike) {}
    explicit Users(PasswordHash hash) : hash_(std::move(hash)) {}

    /// Reads lines "name:password". Empty lines and lines that begin with # are skipped; blanks count. A password that
    /// begins with $ is a hash of crypt(5), as "openssl passwd -6" makes it. Throws UsersError with the name of the
    /// source and the line when a line is not of this form or a user has two.
    static Users Read(std::istream& lines, const std::string& source, PasswordHash hash = password_hash::HashLike);

    /// Adds a user with a password that is no hash, whatever it looks like. A user who is there gets the password.
    void Add(const std::string& name, const std::string& password);

    bool IsEmpty() const { return users_.empty(); }

    /// The name of the user whose name and password the value of a header Authorization carries, nothing if they are
    /// not those of a user. The time that it takes does not tell how much of a password is right.
    std::optional<std::string> Authenticate(std::string_view authorization) const;

  private:
    struct Secret {
        std::string text;
        bool isHash = false;
    };

    /// What passwords of unknown users are compared with; they are refused even if it matches.
    static const Secret kNobody;

    bool Matches(const Secret& secret, const std::string& password) const;
    void AddLine(const std::string& line);

    PasswordHash hash_;
    std::map<std::string, Secret> users_;
    /// The hash of some user; empty if there is none.
    std::string anyHash_;
};

} // namespace demo
