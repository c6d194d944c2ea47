#include "server/LoginDelays.h"

#include <algorithm>

namespace demo {

std::optional<LoginDelays::Clock::time_point> LoginDelays::TakeTurn(const std::string& address, Clock::time_point now) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = records_.find(address);
    if (found == records_.end()) {
        return now;
    }
    Record& record = found->second;
    const auto turn = std::max(now, record.nextTurn);
    if (turn - now > kLongestDelay) {
        return std::nullopt;
    }
    record.nextTurn = turn + DelayAfter(record.failures);
    return turn;
}

void LoginDelays::Failed(const std::string& address, Clock::time_point now) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (records_.size() >= kMaxAddresses && records_.count(address) == 0) {
        ForgetOldest();
    }
    Record& record = records_[address];
    ++record.failures;
    record.lastFailure = now;
    record.nextTurn = std::max(record.nextTurn, now + DelayAfter(record.failures));
}

void LoginDelays::Succeeded(const std::string& address) {
    const std::lock_guard<std::mutex> lock(mutex_);
    records_.erase(address);
}

std::chrono::milliseconds LoginDelays::DelayAfter(int failures) {
    if (failures < kFreeFailures) {
        return std::chrono::milliseconds(0);
    }
    auto delay = kFirstDelay;
    for (int i = kFreeFailures; i < failures && delay < kLongestDelay; ++i) {
        delay *= 2;
    }
    return std::min(delay, kLongestDelay);
}

void LoginDelays::ForgetOldest() {
    records_.erase(std::min_element(records_.begin(), records_.end(), [](const auto& a, const auto& b) {
        return a.second.lastFailure < b.second.lastFailure;
    }));
}

} // namespace demo
