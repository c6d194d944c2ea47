#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace demo {

/// Slows down the guessing of passwords: from the third failure in a row on, the logins from an address come one after
/// the other, with a pause before each that doubles with each failure up to a limit. Safe to use from several threads.
class LoginDelays {
  public:
    using Clock = std::chrono::steady_clock;

    static constexpr int kFreeFailures = 3;
    static constexpr std::chrono::milliseconds kFirstDelay{100};
    static constexpr std::chrono::milliseconds kLongestDelay{2'000};
    /// The addresses that are remembered; beyond, the one whose last failure is the oldest is forgotten.
    static constexpr std::size_t kMaxAddresses = 1024;

    /// When a login from an address may be checked, now or later; that turn is taken then. Nothing if it would be later
    /// than the longest delay.
    std::optional<Clock::time_point> TakeTurn(const std::string& address, Clock::time_point now);

    void Failed(const std::string& address, Clock::time_point now);
    void Succeeded(const std::string& address);

  private:
    struct Record {
        int failures = 0;
        Clock::time_point lastFailure;
        Clock::time_point nextTurn;
    };

    static std::chrono::milliseconds DelayAfter(int failures);
    void ForgetOldest();

    std::mutex mutex_;
    std::map<std::string, Record> records_;
};

} // namespace demo
