#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace demo {

/// The files in which Linux tells about itself, below a root folder: "/", or one with files of a test. Paths are
/// relative to it. A file that is absent or unreadable is like an empty one: in a container many are.
class SystemFiles {
  public:
    explicit SystemFiles(std::string root);

    /// The path of a file below the root folder, for system calls.
    std::string Path(std::string_view path) const;

    std::string Text(std::string_view path) const;
    std::vector<std::string> Lines(std::string_view path) const;
    /// The first line, nothing if the file is empty.
    std::optional<std::string> Line(std::string_view path) const;
    /// The first line as a number, nothing if it is none (or negative).
    std::optional<std::uint64_t> Number(std::string_view path) const;
    /// The lines "name<separator> value" of a file; the first of each name.
    std::map<std::string, std::string> Fields(std::string_view path, char separator) const;
    /// The names in a folder, sorted.
    std::vector<std::string> List(std::string_view path) const;

  private:
    std::string root_;
};

/// The number that a text begins with; nothing if there is none or it is too large.
std::optional<std::uint64_t> LeadingNumber(std::string_view text);

/// The parts of a text between white space.
std::vector<std::string> Words(std::string_view text);

} // namespace demo
