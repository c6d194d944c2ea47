#pragma once

#include <functional>
#include <iosfwd>
#include <string>

namespace cimhttp {

/// A file that gets new content as a whole or stays as it was.
class OutputFile {
  public:
    /// Throws Failure, naming the file, when it cannot be written; so that this is known before the work is done.
    explicit OutputFile(const std::string& path);

    /// Lets `write` make the content, and puts it in the place of the old one once it is on the disk. The file keeps
    /// its permissions. A symbolic link stays one; a device or a pipe is written to directly. Throws Failure, naming
    /// the file, when it cannot be written.
    void Replace(const std::function<void(std::ostream&)>& write) const;

  private:
    void WriteInPlace(const std::function<void(std::ostream&)>& write) const;
    void WriteBesideAndRename(const std::function<void(std::ostream&)>& write) const;

    std::string path_;   ///< as it was given
    std::string target_; ///< what it leads to
};

} // namespace cimhttp
