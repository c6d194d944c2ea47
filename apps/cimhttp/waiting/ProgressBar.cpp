#include "waiting/ProgressBar.h"

#include <string>

namespace cimhttp {

namespace {

constexpr std::size_t kBarWidth = 24;

} // namespace

void ProgressBar::Show(std::size_t classesDone, std::size_t instances, std::chrono::seconds elapsed) {
    const std::size_t filled = classCount_ == 0 ? kBarWidth : kBarWidth * classesDone / classCount_;
    std::string text = '[' + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " +
                       std::to_string(classesDone) + " of " + std::to_string(classCount_) + " classes, " +
                       std::to_string(instances) + " instances, " + ElapsedText(elapsed);
    if (classesDone > 0 && classesDone < classCount_) {
        const auto left = elapsed * (classCount_ - classesDone) / classesDone;
        text += ", about " + ElapsedText(std::chrono::duration_cast<std::chrono::seconds>(left)) + " left";
    }
    line_.Show(text);
}

} // namespace cimhttp
