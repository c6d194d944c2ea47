#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Pegasus::http {

/// The fields of a header or trailer block, in the order of the wire.
class HttpFields {
  public:
    void add(std::string_view name, std::string_view value) { fields_.emplace_back(name, value); }

    /// The first value of a name, found without regard to case; null when there is none.
    const std::string* find(std::string_view name) const;
    /// The first value of a name that may have the prefix of an extension (RFC 2774), two digits and a hyphen: servers
    /// that were made for M-POST requests write "73-CIMOperation", with the "73" told in another field. The field
    /// without a prefix comes first. Null when there is none.
    const std::string* findExtension(std::string_view name) const;
    /// All values of a name.
    std::vector<std::string_view> findAll(std::string_view name) const;
    /// All of them as lines `Name: value`, each with its line end.
    std::string lines() const;

  private:
    std::vector<std::pair<std::string, std::string>> fields_;
};

/// The status of an answer that wants a login.
constexpr unsigned kUnauthorized = 401;

/// What an answer says before its body.
struct HttpHead {
    unsigned status = 0;
    std::string reason;
    HttpFields fields;
};

} // namespace Pegasus::http
