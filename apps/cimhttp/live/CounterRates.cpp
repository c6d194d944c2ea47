#include "live/CounterRates.h"

#include <utility>

namespace cimhttp {

void CounterRates::Begin(Time time) {
    earlier_ = std::exchange(now_, {});
    earlierTime_ = std::exchange(time_, time);
}

std::optional<long double> CounterRates::Rate(const std::string& path, const std::string& property,
                                              long double number) {
    const std::string key = path + '\0' + property;
    now_[key] = number;
    const auto before = earlier_.find(key);
    if (before == earlier_.end() || time_ <= earlierTime_) {
        return std::nullopt;
    }
    if (number < before->second) {
        ++restarts_;
        return std::nullopt;
    }
    return (number - before->second) / std::chrono::duration<long double>(time_ - earlierTime_).count();
}

} // namespace cimhttp
