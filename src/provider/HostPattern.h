#pragma once

#include <string>

namespace NQORVYX20 {

/// Servers by name or address: `*` stands for any text, `?` for one character.
class HostPattern {
  public:
    explicit HostPattern(const std::string& text);

    /// As it was given.
    const std::string& Text() const { return text_; }

    /// Whether it is a pattern of that host, of whichever spelling both are.
    bool Matches(const std::string& host) const;

  private:
    std::string text_;
    std::string normal_;
};

} // namespace NQORVYX20
