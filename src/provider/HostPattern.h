#pragma once

#include <string>

namespace NQORVYX20 {

/// A pattern of server names and addresses: `*` stands for any text, `?` for one character.
class HostPattern {
  public:
    explicit HostPattern(const std::string& text);

    /// As it was given.
    const std::string& Text() const { return text_; }

    /// Whether the pattern matches the host, however the two are spelled.
    bool Matches(const std::string& host) const;

  private:
    std::string text_;
    std::string normal_;
};

} // namespace NQORVYX20
