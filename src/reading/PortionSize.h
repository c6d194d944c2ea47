#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace NQORVYX20 {

/// How many instances the next portion of an enumeration is to have: what takes about half a second, as far as the
/// portions before can tell.
class PortionSize {
  public:
    static constexpr std::uint32_t kFirst = 100;
    static constexpr std::uint32_t kMost = 4000; ///< which take memory, too
    static constexpr std::uint32_t kGrowth = 4;  ///< from one portion to the next, at most
    static constexpr std::chrono::milliseconds kTime{500};

    /// No portion is to have more than `most`.
    explicit PortionSize(std::size_t most = kMost)
        : most_(static_cast<std::uint32_t>(std::clamp<std::size_t>(most, 1, kMost))), next_(std::min(kFirst, most_)) {}

    std::uint32_t Next() const { return next_; }

    /// Says how long a portion took, and how many it had. One that had fewer than were asked for says nothing: the
    /// server had no more of them, or gives no more at a time.
    void Took(std::uint32_t count, std::chrono::nanoseconds time);

  private:
    std::uint32_t most_;
    std::uint32_t next_;
};

} // namespace NQORVYX20
