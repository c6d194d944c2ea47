#include "FailureLog.h"

#include <utility>

namespace cimhttp {

FailureLog::FailureLog(std::ostream& stream, std::optional<EVYXLogSeverity> level) {
    if (level) {
        written_.emplace(stream, *level);
    }
}

void FailureLog::Log(EVYXLogSeverity severity, std::string message) {
    if (written_) {
        written_->Log(severity, std::move(message));
    }
}

} // namespace cimhttp
