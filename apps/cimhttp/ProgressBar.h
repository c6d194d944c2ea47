#pragma once

#include <cstddef>
#include <iosfwd>

namespace cimhttp {

/// One line of a terminal that shows how far the reading of classes has come. It goes when the object does.
class ProgressBar {
  public:
    /// Shows nothing without a terminal, which must live longer than the bar.
    ProgressBar(std::ostream* terminal, std::size_t class_count) : terminal_(terminal), class_count_(class_count) {}
    ~ProgressBar() { Clear(); }
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// How many classes are done, and how many instances were in them.
    void Show(std::size_t classes_done, std::size_t instances);

    /// Takes the bar away, so that other lines can be written, until it is shown again.
    void Clear();

  private:
    std::ostream* terminal_;
    std::size_t class_count_;
};

} // namespace cimhttp
