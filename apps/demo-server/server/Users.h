#pragma once

#include <istream>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace demo {

/// A list of users that cannot be used. The text names the file and the line and says what is wrong.
class UsersError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Who may come in, by Basic authentication (RFC 7617). Safe to read from any thread.
class Users {
  public:
    /// Reads lines "name:password". Empty lines and lines that begin with # are skipped; blanks count. A password that
    /// begins with $ is a hash of crypt(5), as "openssl passwd -6" makes it. Throws UsersError with the name of the
    /// source and the line when a line is not of this form or a user has two.
    static Users Read(std::istream& lines, const std::string& source);

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

    static bool Matches(const Secret& secret, const std::string& password);
    void AddLine(const std::string& line);

    std::map<std::string, Secret> users_;
};

} // namespace demo
