#include "ProgressBar.h"

#include <ostream>
#include <string>

namespace cimhttp {

namespace {

constexpr std::size_t kBarWidth = 24;
constexpr const char* kEraseLine = "\r\x1b[K";

} // namespace

void ProgressBar::Show(std::size_t classes_done, std::size_t instances) {
    if (terminal_ == nullptr) {
        return;
    }
    const std::size_t filled = class_count_ == 0 ? kBarWidth : kBarWidth * classes_done / class_count_;
    *terminal_ << kEraseLine << '[' << std::string(filled, '#') << std::string(kBarWidth - filled, '.') << "] "
               << classes_done << " of " << class_count_ << " classes, " << instances << " instances" << std::flush;
}

void ProgressBar::Clear() {
    if (terminal_ != nullptr) {
        *terminal_ << kEraseLine << std::flush;
    }
}

} // namespace cimhttp
