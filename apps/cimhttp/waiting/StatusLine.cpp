#include "waiting/StatusLine.h"

#include "text/TerminalText.h"

#include <ostream>

namespace cimhttp {

namespace {

constexpr const char* kEraseLine = "\r\x1b[K";

} // namespace

void StatusLine::Show(const std::string& text) {
    // A line that the terminal breaks could not be taken away.
    const std::string line = width_ > 1 ? Cut(text, width_ - 1) : text;
    if (terminal_ == nullptr || line == shown_) {
        return;
    }
    *terminal_ << kEraseLine << line << std::flush;
    shown_ = line;
}

void StatusLine::Clear() {
    if (!shown_.empty()) {
        *terminal_ << kEraseLine << std::flush;
        shown_.clear();
    }
}

std::string ElapsedText(std::chrono::seconds time) {
    constexpr int kMinute = 60;
    const auto seconds = std::to_string(time.count() % kMinute);
    return std::to_string(time.count() / kMinute) + (seconds.size() < 2 ? ":0" : ":") + seconds;
}

} // namespace cimhttp
