#include "FailureLog.h"

#include <utility>

namespace cimhttp {

FailureLog::FailureLog(std::ostream& stream, std::optional<EVYXLogSeverity> level) {
    if (level) {
        written_.emplace(stream, *level);
    }
}

void FailureLog::Log(EVYXLogSeverity severity, std::string message) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (severity == eLogError) {
        ++error_count_;
    }
    if (written_) {
        written_->Log(severity, std::move(message));
    }
}

std::size_t FailureLog::ErrorCount() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return error_count_;
}

} // namespace cimhttp
