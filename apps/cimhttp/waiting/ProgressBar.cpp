#include "waiting/ProgressBar.h"

#include <string>

namespace cimhttp {

namespace {

constexpr std::size_t kBarWidth = 24;

} // namespace

void ProgressBar::Show(std::size_t classes_done, std::size_t instances, std::chrono::seconds elapsed) {
    const std::size_t filled = class_count_ == 0 ? kBarWidth : kBarWidth * classes_done / class_count_;
    std::string text = '[' + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " +
                       std::to_string(classes_done) + " of " + std::to_string(class_count_) + " classes, " +
                       std::to_string(instances) + " instances, " + ElapsedText(elapsed);
    if (classes_done > 0 && classes_done < class_count_) {
        const auto left = elapsed * (class_count_ - classes_done) / classes_done;
        text += ", about " + ElapsedText(std::chrono::duration_cast<std::chrono::seconds>(left)) + " left";
    }
    line_.Show(text);
}

} // namespace cimhttp
