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
    /// All values of a name.
    std::vector<std::string_view> findAll(std::string_view name) const;
    /// All of them as lines `Name: value`, each with its line end.
    std::string lines() const;

  private:
    std::vector<std::pair<std::string, std::string>> fields_;
};

/// What an answer says before its body.
struct HttpHead {
    unsigned status = 0;
    std::string reason;
    HttpFields fields;
};

/// Without regard to the case of the letters A to Z.
bool equalsNoCase(std::string_view a, std::string_view b);

} // namespace Pegasus::http
