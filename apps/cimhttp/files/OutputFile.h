#pragma once

#include "Descriptor.h"

#include <sys/types.h>

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

namespace cimhttp {

/// A file that gets new content as a whole or stays as it was.
class OutputFile {
  public:
    /// Throws Failure, naming the file, when it cannot be written; so that this is known before the work is done. The
    /// file that a symbolic link leads to is found here, and its folder kept open: links that change later do not
    /// matter. `permissions` are the file's; those that it has, or those of any new file, without.
    explicit OutputFile(const std::string& path, std::optional<mode_t> permissions = {});

    /// Lets `write` make the content, and puts it in the place of the old one once it is on the disk. A symbolic link
    /// stays one; a device or a pipe is written to directly. Throws Failure, naming the file, when it cannot be
    /// written. Whatever goes wrong, and when a signal ends the program, the old file stays, and no other beside it.
    void Replace(const std::function<void(std::ostream&)>& write) const;

  private:
    void WriteInPlace(const std::function<void(std::ostream&)>& write) const;
    void WriteBesideAndRename(const std::function<void(std::ostream&)>& write) const;
    mode_t Permissions() const;

    std::string path_;   ///< as it was given
    std::string folder_; ///< of what it leads to
    std::string name_;   ///< there
    Descriptor openFolder_;
    std::optional<mode_t> permissions_;
    bool isReplaced_;
};

} // namespace cimhttp
