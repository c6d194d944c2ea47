#pragma once

#include <map>
#include <mutex>
#include <set>
#include <string>

namespace cimhttp {

/// Lets users in by name and password. For several threads.
class WebLogin {
  public:
    /// The hashes of passwords by name, see WebAccess. Without users, everybody is let in.
    explicit WebLogin(std::map<std::string, std::string> users) : users_(std::move(users)) {}

    /// Whether the value of the header Authorization lets in; it is empty where there is none. Takes as long for a name
    /// that there is not as for a wrong password.
    bool Accepts(const std::string& authorization);

  private:
    bool IsKnown(const std::string& credentials) const;

    const std::map<std::string, std::string> users_;
    std::mutex mutex_;
    std::set<std::string> accepted_; ///< digests of headers that have let in: a hash takes long on purpose
};

} // namespace cimhttp
