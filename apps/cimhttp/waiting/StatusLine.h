#pragma once

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <string>

namespace cimhttp {

/// The last line of a terminal, with a text that changes while the program works. It goes when the object does.
class StatusLine {
  public:
    /// Shows nothing without a terminal, which must live longer than the line. `width` is the terminal's; 0 for any.
    StatusLine(std::ostream* terminal, std::size_t width) : terminal_(terminal), width_(width) {}
    ~StatusLine() { Clear(); }
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    /// Shows a text, which must be printable, in the place of the one before. What the terminal is too narrow for is
    /// cut off.
    void Show(const std::string& text);

    /// Takes the line away, so that other lines can be written, until it is shown again.
    void Clear();

  private:
    std::ostream* terminal_;
    std::size_t width_;
    std::string shown_;
};

/// As in `1:05`.
std::string ElapsedText(std::chrono::seconds time);

} // namespace cimhttp
