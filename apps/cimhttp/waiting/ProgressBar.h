#pragma once

#include "waiting/StatusLine.h"

#include <chrono>
#include <cstddef>
#include <iosfwd>

namespace cimhttp {

/// A status line that shows how far the reading of classes has come, how long it has taken and how long it may still
/// take.
class ProgressBar {
  public:
    /// See StatusLine.
    ProgressBar(std::ostream* terminal, std::size_t width, std::size_t classCount)
        : line_(terminal, width), classCount_(classCount) {}

    /// How many classes are done, how many instances were in them, and the time since the begin.
    void Show(std::size_t classesDone, std::size_t instances, std::chrono::seconds elapsed);

    /// Takes the bar away, so that other lines can be written, until it is shown again.
    void Clear() { line_.Clear(); }

  private:
    StatusLine line_;
    std::size_t classCount_;
};

} // namespace cimhttp
