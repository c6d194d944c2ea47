#pragma once

#include "Descriptor.h"

#include <sys/types.h>

#include <cstddef>
#include <iosfwd>
#include <mutex>
#include <optional>
#include <string_view>

namespace cimhttp {

/// A temporary file without a name, which is gone with the program: for what must wait and may be more than memory
/// should hold. Several threads may use it. Throws Failure where it cannot be made, written or read.
class Spool {
  public:
    /// Where a piece is.
    struct Place {
        off_t begin;
        std::size_t size;
    };

    /// The file is made, in the folder for temporary files, which TMPDIR names, when something is appended.
    Spool() = default;

    Place Append(std::string_view text);

    void CopyTo(std::ostream& output, Place place) const;

    /// All pieces, in the order in which they were appended.
    void CopyTo(std::ostream& output) const;

  private:
    mutable std::mutex mutex_;       // guards all below
    std::optional<Descriptor> file_; // does not change once it is made
    off_t end_ = 0;
};

} // namespace cimhttp
