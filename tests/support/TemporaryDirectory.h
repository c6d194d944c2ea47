#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace support {

/// A new, empty directory that is removed with all its content at the end of the object's life.
class TemporaryDirectory {
  public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& Path() const { return path_; }

    /// Writes a file and returns its full path.
    std::string WriteFile(const std::string& name, std::string_view content) const;

  private:
    std::filesystem::path path_;
};

} // namespace support
