#pragma once

#include <string>
#include <string_view>

namespace demo {

/// A user name and password for Basic authentication (RFC 7617).
class Credentials {
  public:
    Credentials(const std::string& user, const std::string& password);

    /// Whether the value of a header Authorization carries them. Takes the same time for every wrong value of a length.
    bool Accept(std::string_view authorization) const;

  private:
    std::string expected_;
};

} // namespace demo
