#pragma once

#include "Descriptor.h"
#include "output/RemovalOnSignal.h"

#include <sys/types.h>

#include <string>

namespace cimhttp {

/// A new file beside another, which takes that one's place or goes, also when a signal ends the program.
class ReplacementFile {
  public:
    /// Beside the file with this name in an open folder, which must stay open. Nothing is followed or opened that is
    /// there already. Check Number() for -1; errno has the reason.
    ReplacementFile(int folder, std::string name);
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    int Number() const { return descriptor_.Number(); }

    /// Puts the file, with these permissions, in the place of the other once it is on the disk. False, with errno, when
    /// that fails.
    bool TakePlace(mode_t permissions);

  private:
    int folder_;
    std::string name_;
    std::string ownName_;
    RemovalOnSignal removal_;
    Descriptor descriptor_;
    bool isRenamed_ = false;
};

} // namespace cimhttp
