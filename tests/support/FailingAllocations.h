#pragma once

#include <cstddef>

namespace support {

/// A machine that runs out of memory: while one of these lives, the n-th allocation of the thread that made it fails
/// (0: the first), or that one and all later ones. Other threads are not affected. A program that uses it has operators
/// new of its own.
class FailingAllocations {
  public:
    enum class Fail { kOne, kAllFromThere };

    explicit FailingAllocations(std::size_t n, Fail fail = Fail::kOne);
    ~FailingAllocations();
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;

    /// Whether an allocation has failed.
    bool HasStruck() const;
};

} // namespace support
