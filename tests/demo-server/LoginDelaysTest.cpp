#include "server/LoginDelays.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using demo::LoginDelays;
using std::chrono::milliseconds;
using Time = LoginDelays::Clock::time_point;

const Time kStart = Time() + std::chrono::hours(1);

void Fail(LoginDelays& delays, const std::string& address, int times, Time now = kStart) {
    for (int i = 0; i < times; ++i) {
        delays.Failed(address, now);
    }
}

/// How long the next login has to wait; -1 for one that is refused.
long Delay(LoginDelays& delays, const std::string& address, Time now = kStart) {
    const auto turn = delays.TakeTurn(address, now);
    return turn ? std::chrono::duration_cast<milliseconds>(*turn - now).count() : -1;
}

TEST(LoginDelays, BeginWithTheThirdFailureAndGrowUpToALimit) {
    std::vector<long> delays;
    for (int failures = 0; failures < 11; ++failures) {
        LoginDelays fresh;
        Fail(fresh, "a", failures);
        delays.push_back(Delay(fresh, "a"));
    }
    EXPECT_EQ(delays, (std::vector<long>{0, 0, 0, 100, 200, 400, 800, 1600, 2000, 2000, 2000}));
}

TEST(LoginDelays, LetLoginsThatComeTogetherWaitForEachOther) {
    LoginDelays delays;
    Fail(delays, "a", 6);
    EXPECT_EQ(Delay(delays, "a"), 800);
    EXPECT_EQ(Delay(delays, "a"), 1600);
    EXPECT_EQ(Delay(delays, "a"), -1);
    EXPECT_EQ(Delay(delays, "a", kStart + milliseconds(500)), 1900);
}

TEST(LoginDelays, EndWithTime) {
    LoginDelays delays;
    Fail(delays, "a", 20);
    EXPECT_EQ(Delay(delays, "a", kStart + LoginDelays::kLongestDelay), 0);
}

TEST(LoginDelays, DoNotConcernOtherAddresses) {
    LoginDelays delays;
    Fail(delays, "a", 20);
    EXPECT_EQ(Delay(delays, "b"), 0);
}

TEST(LoginDelays, EndWithAGoodLogin) {
    LoginDelays delays;
    Fail(delays, "a", 20);
    delays.Succeeded("a");
    EXPECT_EQ(Delay(delays, "a"), 0);
    Fail(delays, "a", LoginDelays::kFreeFailures - 1);
    EXPECT_EQ(Delay(delays, "a"), 0);
}

TEST(LoginDelays, AreForgottenFirstOfTheAddressWithTheOldestFailure) {
    LoginDelays delays;
    Fail(delays, "oldest", 3, kStart - std::chrono::seconds(2));
    Fail(delays, "old", 20, kStart - std::chrono::seconds(1));
    for (std::size_t i = 0; i < LoginDelays::kMaxAddresses - 1; ++i) {
        Fail(delays, std::to_string(i), 3);
    }
    Fail(delays, "oldest", 2);
    EXPECT_EQ(Delay(delays, "oldest"), 0) << "was not forgotten";
    EXPECT_EQ(Delay(delays, "1022"), 100);
}

} // namespace
