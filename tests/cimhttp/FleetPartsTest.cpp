// What reading several servers is made of.

#include "Failure.h"
#include "files/Spool.h"
#include "files/SpooledText.h"
#include "fleet/FleetRun.h"
#include "fleet/ServerFile.h"
#include "fleet/ServerLines.h"
#include "fleet/SinkStream.h"
#include "output/JsonRecords.h"
#include "output/MergedListing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <future>
#include <mutex>
#include <set>
#include <sstream>
#include <stdexcept>
#include <thread>

using cimhttp::Failure;
using cimhttp::FleetRun;
using cimhttp::JsonRecords;
using cimhttp::Listing;
using cimhttp::MergedListing;
using cimhttp::ServerLines;
using testing::ElementsAre;

namespace {

FleetRun::Steps StepsWith(std::function<void(std::size_t)> work, std::function<void(std::size_t)> take) {
    return {std::move(work), std::move(take), [](std::size_t) {}, [] { FAIL() << "the work goes on"; }};
}

std::string RecordsOf(const std::vector<std::string>& pieces) {
    JsonRecords records("rack1");
    std::string json;
    for (const std::string& piece : pieces) {
        records.Append(piece);
        json += records.TakeSoFar();
    }
    return json + records.End();
}

std::vector<std::string> Headings(const Listing& listing) {
    std::vector<std::string> headings;
    for (const auto& column : listing.Columns()) {
        headings.push_back(column.heading);
    }
    return headings;
}

std::vector<std::string> Texts(const std::vector<cimhttp::Cell>& row) {
    std::vector<std::string> texts;
    texts.reserve(row.size());
    for (const auto& cell : row) {
        texts.push_back(cell.value.IsNull() ? "null" : cell.text);
    }
    return texts;
}

} // namespace

// --- Work in threads ---------------------------------------------------------------------------------------------

TEST(FleetRun, HandsOverInTheOrderOfTheList) {
    std::promise<void> lastIsDone;
    auto last = lastIsDone.get_future().share();
    std::vector<std::size_t> taken;
    FleetRun(3, 3, FleetRun::Order::kOfList)
        .Run(StepsWith(
            [&](std::size_t number) {
                if (number == 2) {
                    lastIsDone.set_value();
                } else {
                    last.wait();
                }
            },
            [&](std::size_t number) { taken.push_back(number); }));
    EXPECT_THAT(taken, ElementsAre(0, 1, 2));
}

TEST(FleetRun, HandsOverWhatIsDoneWhereTheOrderIsThatOfArrival) {
    std::promise<void> lastIsTaken;
    std::vector<std::size_t> taken;
    FleetRun(2, 2, FleetRun::Order::kOfArrival)
        .Run(StepsWith(
            [&](std::size_t number) {
                if (number == 0) {
                    lastIsTaken.get_future().wait(); // never ends where the first one is waited for
                }
            },
            [&](std::size_t number) {
                taken.push_back(number);
                if (number == 1) {
                    lastIsTaken.set_value();
                }
            }));
    EXPECT_THAT(taken, ElementsAre(1, 0));
}

TEST(FleetRun, WorksOnNoMoreThanThatAtOnceAndInTheThreadsOfItsOwn) {
    std::mutex mutex;
    std::set<std::thread::id> threads;
    std::atomic<std::size_t> done{0};
    FleetRun(20, 3, FleetRun::Order::kOfList)
        .Run(StepsWith(
            [&](std::size_t) {
                const std::lock_guard<std::mutex> lock(mutex);
                threads.insert(std::this_thread::get_id());
            },
            [&](std::size_t) { ++done; }));
    EXPECT_EQ(done, 20U);
    EXPECT_LE(threads.size(), 3U);
    EXPECT_EQ(threads.count(std::this_thread::get_id()), 0U);
}

TEST(FleetRun, EndsWithWhatTakingThrowsAndBeginsNothingMore) {
    constexpr std::size_t kParallel = 2;
    std::atomic<std::size_t> begun{0};
    std::atomic<std::size_t> taken{0};
    std::promise<void> isLeft; // after which nothing begins
    auto left = isLeft.get_future().share();
    const FleetRun::Steps steps{[&](std::size_t number) {
                                    ++begun;
                                    if (number >= kParallel) {
                                        left.wait();
                                    }
                                },
                                [&](std::size_t) {
                                    ++taken;
                                    throw Failure(Failure::kOther, "the disk is full");
                                },
                                [](std::size_t) {}, [&] { isLeft.set_value(); }};
    EXPECT_THROW(FleetRun(100, kParallel, FleetRun::Order::kOfArrival).Run(steps), Failure);
    EXPECT_EQ(taken, 1U);
    EXPECT_LE(begun, 2 * kParallel);
}

TEST(FleetRun, LeavesWhereTheWorkDoesNotEnd) {
    std::promise<void> begin;
    std::promise<void> end;
    auto ended = end.get_future().share();
    const FleetRun::Steps steps{[&](std::size_t number) {
                                    if (number == 0) {
                                        begin.get_future().wait(); // of the other one's work
                                    } else {
                                        begin.set_value();
                                        ended.wait();
                                    }
                                },
                                [](std::size_t) { throw std::runtime_error("the disk is full"); }, [](std::size_t) {},
                                [&] { end.set_value(); }};
    EXPECT_THROW(FleetRun(2, 2, FleetRun::Order::kOfList).Run(steps), std::runtime_error);
    EXPECT_EQ(ended.wait_for(std::chrono::seconds(0)), std::future_status::ready);
}

// --- Whose line, whose record ------------------------------------------------------------------------------------

TEST(ServerLines, NameTheServerInEveryLine) {
    std::string all;
    ServerLines text("rack1", ServerLines::Form::kText, [&](std::string_view line) { all += line; });
    text.Append("a\n\nb");
    text.Append("c");
    text.End();
    EXPECT_EQ(all, "rack1: a\n\nrack1: bc\n");
    all.clear();
    ServerLines remarks("rack1", ServerLines::Form::kRemarks, [&](std::string_view line) { all += line; });
    remarks.Append("cimhttp: no\nmore\n");
    EXPECT_EQ(all, "cimhttp: rack1: no\nrack1: more\n");
    all.clear();
    ServerLines records("\"", ServerLines::Form::kJson, [&](std::string_view line) { all += line; });
    records.Append("{\"a\":1}\n");
    EXPECT_EQ(all, "{\"server\":\"\\\"\",\"a\":1}\n");
}

TEST(JsonRecords, AreTheElementsOfAnArrayAndWhatElseThereIs) {
    EXPECT_EQ(RecordsOf({R"([
{"a":[1,{"b":2}]},
{}
])"}),
              "{\"server\":\"rack1\",\"a\":[1,{\"b\":2}]},\n{\"server\":\"rack1\"}");
    EXPECT_EQ(RecordsOf({"{\"a\" : 1}\n"}), "{\"server\":\"rack1\",\"a\":1}");
    EXPECT_EQ(RecordsOf({"[\"x\",3,null,[1,2]]"}),
              "{\"server\":\"rack1\",\"value\":\"x\"},\n{\"server\":\"rack1\",\"value\":3},\n"
              "{\"server\":\"rack1\",\"value\":null},\n{\"server\":\"rack1\",\"value\":[1,2]}");
    EXPECT_EQ(RecordsOf({"7"}), "{\"server\":\"rack1\",\"value\":7}");
    EXPECT_EQ(RecordsOf({"[\n]\n"}), "");
}

TEST(JsonRecords, AreTheSameInWhateverPiecesTheyCome) {
    const std::string json = "[\n{\"a \\\\\":\"x, ]}\\\" [{\"},\n\"b ]\"\n]\n";
    std::vector<std::string> characters;
    for (const char character : json) {
        characters.emplace_back(1, character);
    }
    EXPECT_EQ(RecordsOf(characters), RecordsOf({json}));
    EXPECT_EQ(RecordsOf({json}), "{\"server\":\"rack1\",\"a \\\\\":\"x, ]}\\\" [{\"},\n"
                                 "{\"server\":\"rack1\",\"value\":\"b ]\"}");
}

TEST(MergedListing, HasTheColumnsOfAllInTheirOrder) {
    Listing first({{"Name"}, {"Speed"}});
    first.AddRow({"a", "3"});
    Listing second({{"Maker"}, {"Name"}, {"Size"}, {"Speed"}, {"Wear"}});
    second.AddRow({"ACME", "b", "9", "4", "1"});
    MergedListing merged;
    EXPECT_TRUE(merged.IsEmpty());
    merged.Add("rack1", first);
    merged.Add("rack2", second);
    const Listing all = merged.AsListing();
    EXPECT_THAT(Headings(all), ElementsAre("Server", "Maker", "Name", "Size", "Speed", "Wear"));
    ASSERT_EQ(all.Rows().size(), 2U);
    EXPECT_THAT(Texts(all.Rows()[0]), ElementsAre("rack1", "null", "a", "null", "3", "null"));
    EXPECT_THAT(Texts(all.Rows()[1]), ElementsAre("rack2", "ACME", "b", "9", "4", "1"));
}

// --- Files -------------------------------------------------------------------------------------------------------

TEST(ServerFile, HasTheNameOfTheServerInEveryPlace) {
    EXPECT_TRUE(cimhttp::IsServerFilePattern("out/{server}.json"));
    EXPECT_FALSE(cimhttp::IsServerFilePattern("out/server.json"));
    EXPECT_EQ(cimhttp::ServerFile("{server}/{server}.json", "rack1"), "rack1/rack1.json");
    EXPECT_EQ(cimhttp::ServerFile("{server}", "{server}"), "{server}");
    for (const char* name : {"", ".", "..", "../x", "a/b", ".hidden"}) {
        EXPECT_THROW(cimhttp::ServerFile("{server}", name), Failure) << name;
    }
}

TEST(SpooledText, IsWholeHoweverLongItIs) {
    const auto spool = std::make_shared<cimhttp::Spool>();
    cimhttp::SpooledText text(spool);
    cimhttp::SpooledText other(spool);
    EXPECT_TRUE(text.IsEmpty());
    std::string expected;
    const std::string piece(100000, 'x');
    for (int i = 0; i < 20; ++i) {
        text.Append(piece + std::to_string(i));
        other.Append("y" + piece);
        expected += piece + std::to_string(i);
    }
    std::ostringstream written;
    text.WriteTo(written);
    EXPECT_EQ(written.str(), expected);
}
