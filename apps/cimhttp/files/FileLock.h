#pragma once

#include "Descriptor.h"

#include <chrono>
#include <string>

namespace cimhttp {

/// Keeps other processes, and other locks of this process, from a piece of work as long as it exists. It locks an empty
/// file, which only its owner can read; the file stays, since removing it would let two processes hold a lock each. The
/// lock ends with its process, however that ends.
class FileLock {
  public:
    /// Makes the file where there is none. Waits for one that holds the lock, but no longer than `timeout`. Throws
    /// Failure(kOther), naming the file, when the lock cannot be had.
    FileLock(const std::string& path, std::chrono::milliseconds timeout);

  private:
    Descriptor descriptor_;
};

} // namespace cimhttp
