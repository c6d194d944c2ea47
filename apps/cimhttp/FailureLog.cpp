#include "FailureLog.h"

#include <utility>

namespace cimhttp {

namespace {

/// The part of a message behind the words with which the plug-in introduces a remote failure.
std::string ReasonIn(const std::string& message) {
    for (const std::string introduction :
         {"returned exception: ", "TCimHTTPNamespace::connect failed: ", "Client Creation Fail: "}) {
        const auto found = message.find(introduction);
        if (found != std::string::npos) {
            return message.substr(found + introduction.size());
        }
    }
    const std::string class_names = "TCimHTTPNamespace::EnumerateClassNames: ";
    if (message.compare(0, class_names.size(), class_names) == 0) {
        const auto reason = message.find(": ", class_names.size());
        return message.substr(reason + 2, message.find_last_not_of('\n') - reason - 1);
    }
    return {};
}

/// The property of an instance that a message tells of; empty for other messages.
std::string LostPropertyIn(const std::string& message) {
    const std::string introduction = "Unable to retrieve property: ";
    const auto found = message.find(introduction);
    return found == std::string::npos ? std::string() : message.substr(found + introduction.size());
}

} // namespace

FailureLog::FailureLog(std::ostream& stream, std::optional<EVYXLogSeverity> level) {
    if (level) {
        written_.emplace(stream, *level);
    }
}

void FailureLog::Log(EVYXLogSeverity severity, std::string message) {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::string reason = ReasonIn(message);
    if (!reason.empty()) {
        reason_ = std::move(reason);
    }
    if (severity == eLogError) {
        ++error_count_;
        std::string property = LostPropertyIn(message);
        if (!property.empty()) {
            lost_properties_.insert(std::move(property));
        }
    }
    if (written_) {
        written_->Log(severity, std::move(message));
    }
}

std::string FailureLog::TakeReason() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(reason_, {});
}

std::set<std::string> FailureLog::TakeLostProperties() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::exchange(lost_properties_, {});
}

std::size_t FailureLog::ErrorCount() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return error_count_;
}

void FailureLog::ResetErrorCount(std::size_t count) {
    const std::lock_guard<std::mutex> lock(mutex_);
    error_count_ = count;
}

} // namespace cimhttp
