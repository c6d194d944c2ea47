#include "waiting/Repetition.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using cimhttp::Failure;
using cimhttp::RepeatedReading;
using cimhttp::Repetition;

namespace {

using std::chrono::seconds;

/// A reading that goes as it is told, letter by letter: `g` is good, `c` a server that cannot be reached, `s` one that
/// answers with an error, `l` a refused login, `n` one that does not have what is read. It notes what happens.
class ScriptedReading : public RepeatedReading {
  public:
    explicit ScriptedReading(std::string script) : script_(std::move(script)) {}

    void Read() override {
        const char letter = script_.at(reads_++);
        const std::string letters = "csln";
        const Failure::ExitStatus statuses[] = {Failure::kConnection, Failure::kServer, Failure::kAuthentication,
                                                Failure::kNotFound};
        if (letter != 'g') {
            throw Failure(statuses[letters.find(letter)], "failed");
        }
    }

    void Show(std::size_t round) override { events_ += std::to_string(round) + ' '; }
    void Lose(const Failure& failure) override { events_ += std::string(failure.what()) + ' '; }
    void Regain() override { events_ += "back "; }

    const std::string& Events() const { return events_; }

  private:
    std::string script_;
    std::size_t reads_ = 0;
    std::string events_;
};

/// The waits of a repetition that ends after `most` of them.
std::vector<Repetition::Duration> WaitsOf(ScriptedReading& reading, seconds interval, std::size_t most) {
    std::vector<Repetition::Duration> waits;
    const auto wait = [&](Repetition::Duration time) {
        waits.push_back(time);
        return waits.size() < most;
    };
    Repetition(interval, wait).Run(reading, std::nullopt);
    return waits;
}

std::vector<Repetition::Duration> Seconds(const std::vector<int>& times) {
    return {seconds(times.at(0)), seconds(times.at(1)), seconds(times.at(2)), seconds(times.at(3)),
            seconds(times.at(4)), seconds(times.at(5)), seconds(times.at(6))};
}

} // namespace

TEST(Repetition, EndsAfterAsManyGoodReadingsAsWanted) {
    ScriptedReading reading("gcgg");
    Repetition(seconds(1), [](auto) { return true; }).Run(reading, 3);
    EXPECT_EQ(reading.Events(), "1 failed back 2 3 ");
    ScriptedReading none("");
    Repetition(seconds(1), [](auto) { return true; }).Run(none, 0);
    EXPECT_EQ(none.Events(), "");
}

TEST(Repetition, EndsWhenTheWaitingEnds) {
    ScriptedReading reading("gg");
    WaitsOf(reading, seconds(1), 3);
    EXPECT_EQ(reading.Events(), "1 2 ");
}

TEST(Repetition, WaitsLongerAfterEachFailureOfARow) {
    ScriptedReading reading("ccccccc");
    EXPECT_EQ(WaitsOf(reading, seconds(3), 7), Seconds({3, 3, 6, 12, 24, 30, 30}));
}

TEST(Repetition, NeverWaitsLessThanTheInterval) {
    ScriptedReading reading("ccccccc");
    EXPECT_EQ(WaitsOf(reading, seconds(60), 7), Seconds({60, 60, 60, 60, 60, 60, 60}));
}

TEST(Repetition, BeginsWithTheIntervalAgainAfterAGoodReading) {
    ScriptedReading reading("cccgcc");
    const auto waits = WaitsOf(reading, seconds(1), 7);
    EXPECT_EQ(waits.at(3), seconds(4));
    EXPECT_LE(waits.at(4), seconds(1));
    EXPECT_EQ(waits.at(5), seconds(1));
    EXPECT_EQ(waits.at(6), seconds(2));
}

TEST(Repetition, TellsOnceThatTheServerHasGoneAndOnceThatItIsBack) {
    ScriptedReading reading("gcscggsg");
    WaitsOf(reading, seconds(1), 9);
    EXPECT_EQ(reading.Events(), "1 failed back 2 3 failed back 4 ");
}

TEST(Repetition, IsEndedByWhatWaitingDoesNotMend) {
    for (const char* script : {"gl", "gn", "gcl", "gcn"}) {
        ScriptedReading reading(script);
        EXPECT_THROW(WaitsOf(reading, seconds(1), 9), Failure) << script;
    }
}
