#pragma once

#include <chrono>
#include <cstddef>
#include <iosfwd>

namespace cimhttp {

/// One line of a terminal that shows how far the reading of classes has come, how long it has taken and how long it may
/// still take. It goes when the object does.
class ProgressBar {
  public:
    /// Shows nothing without a terminal, which must live longer than the bar. `width` is the terminal's; 0 for any.
    ProgressBar(std::ostream* terminal, std::size_t width, std::size_t class_count);
    ~ProgressBar() { Clear(); }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// How many classes are done, how many instances were in them, and the time since the begin.
    void Show(std::size_t classes_done, std::size_t instances, std::chrono::seconds elapsed);

    /// Takes the bar away, so that other lines can be written, until it is shown again.
    void Clear();

  private:
    std::ostream* terminal_;
    std::size_t width_;
    std::size_t class_count_;
};

} // namespace cimhttp
