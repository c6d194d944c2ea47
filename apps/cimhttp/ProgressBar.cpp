#include "ProgressBar.h"

#include <ostream>
#include <string>

namespace cimhttp {

namespace {

constexpr std::size_t kBarWidth = 24;
constexpr const char* kEraseLine = "\r\x1b[K";

/// As in `1:05`.
std::string Clock(std::chrono::seconds time) {
    constexpr int kMinute = 60;
    const auto seconds = std::to_string(time.count() % kMinute);
    return std::to_string(time.count() / kMinute) + (seconds.size() < 2 ? ":0" : ":") + seconds;
}

} // namespace

ProgressBar::ProgressBar(std::ostream* terminal, std::size_t width, std::size_t class_count)
    : terminal_(terminal), width_(width), class_count_(class_count) {}

void ProgressBar::Show(std::size_t classes_done, std::size_t instances, std::chrono::seconds elapsed) {
    if (terminal_ == nullptr) {
        return;
    }
    const std::size_t filled = class_count_ == 0 ? kBarWidth : kBarWidth * classes_done / class_count_;
    std::string line = '[' + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " +
                       std::to_string(classes_done) + " of " + std::to_string(class_count_) + " classes, " +
                       std::to_string(instances) + " instances, " + Clock(elapsed);
    if (classes_done > 0 && classes_done < class_count_) {
        const auto left = elapsed * (class_count_ - classes_done) / classes_done;
        line += ", about " + Clock(std::chrono::duration_cast<std::chrono::seconds>(left)) + " left";
    }
    if (width_ > 0 && line.size() >= width_) {
        line.resize(width_ - 1); // a line that the terminal breaks could not be taken away
    }
    *terminal_ << kEraseLine << line << std::flush;
}

void ProgressBar::Clear() {
    if (terminal_ != nullptr) {
        *terminal_ << kEraseLine << std::flush;
    }
}

} // namespace cimhttp
