// The program before a server that sends something odd: whatever it is, the program either shows exactly what was sent
// and ends with 0, or says that something is missing. Every answer is one of a good server with one random change.

#include "AnswerMutation.h"
#include "Failure.h"
#include "InProcessRun.h"
#include "SchemaServer.h"
#include "SecondSchema.h"
#include "SentInstances.h"
#include "support/ParsedJson.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>

using cimhttp::Failure;
using nlohmann::json;
using support::ProgramRun;
using Expectation = MutatedAnswer::Expectation;

namespace {

constexpr unsigned kRunsOfEachMutation = 200;

/// The classes whose instances are read, with superclasses without keys and without instances of their own.
const std::vector<std::string> kClasses{"WH_Thing", "WH_Item",   "WH_Box",    "WH_Crate",   "WH_Pallet",
                                        "WH_Shelf", "WH_Sample", "WH_Ticket", "WH_Shipment"};

/// How the program is asked for the instances of a class.
enum class Way { kInstances, kDeep, kExact, kCollect };
constexpr unsigned kWays = 4;

struct MutationName {
    Mutation mutation;
    const char* name;
};

void PrintTo(const MutationName& mutation, std::ostream* stream) { *stream << mutation.name; }

const std::vector<MutationName> kMutations{
    {Mutation::kOtherValue, "OtherValue"},
    {Mutation::kNoValue, "NoValue"},
    {Mutation::kNoProperty, "NoProperty"},
    {Mutation::kOtherName, "OtherName"},
    {Mutation::kOtherType, "OtherType"},
    {Mutation::kOtherArrayness, "OtherArrayness"},
    {Mutation::kDoubledInstance, "DoubledInstance"},
    {Mutation::kOtherKey, "OtherKey"},
    {Mutation::kNoKey, "NoKey"},
    {Mutation::kOtherClass, "OtherClass"},
    {Mutation::kUnknownClass, "UnknownClass"},
    {Mutation::kGarbage, "Garbage"},
    {Mutation::kCut, "Cut"},
};

/// What the program shows: an array of instances, and whether it takes it for all.
struct Shown {
    ProgramRun run;
    bool isComplete;
    json instances;
};

class MutationTest : public testing::TestWithParam<MutationName> {
  protected:
    /// One class, one way, one change.
    void RunOnce(unsigned seed) {
        std::mt19937 random(seed);
        const std::string& className = kClasses[random() % kClasses.size()];
        const auto way = static_cast<Way>(random() % kWays);
        std::optional<MutatedAnswer> mutated;
        server_.SetChange([&](const std::string& body) {
            mutated = Mutate(body, GetParam().mutation, random);
            return mutated->sent;
        });
        const Shown shown = Ask(className, way);
        server_.SetChange({});
        const auto bodies = server_.TakeChanged();
        SCOPED_TRACE("seed " + std::to_string(seed) + ", class " + className + ", way " +
                     std::to_string(static_cast<unsigned>(way)) + ", " + (mutated ? mutated->what : "") + ", status " +
                     std::to_string(shown.run.status) + ": " + shown.run.errors);
        ASSERT_EQ(bodies.size(), 1U) << "of requests for instances";
        // What stands behind a change need not be read by who wants the class itself alone.
        const bool isRelaxed = way == Way::kExact && mutated->expectation == Expectation::kRefused;
        Check(Sent(bodies.front(), way, className), isRelaxed ? Expectation::kEither : mutated->expectation, shown);
    }

  private:
    Shown Ask(const std::string& className, Way way) const {
        if (way == Way::kCollect) {
            return Collect(className);
        }
        std::vector<std::string> arguments{"--host", server_.Address(), "instances", className, "-o", "json"};
        if (way != Way::kInstances) {
            arguments.emplace_back(way == Way::kDeep ? "--deep" : "--exact");
        }
        const ProgramRun run = RunInProcess(arguments);
        return {run, run.status == 0, support::ParsedJsonOrDiscarded(run.output)};
    }

    Shown Collect(const std::string& className) const {
        const std::string document =
            directory_.WriteFile("requested.xml", "<vyx version=\"1\"><class name=\"" + className + "\"/></vyx>");
        const std::string file = (directory_.Path() / "collected.json").string();
        directory_.WriteFile("collected.json", "");
        const ProgramRun run = RunInProcess({"--host", server_.Address(), "collect", document, "--out", file});
        const json collected = support::ParsedJsonOrDiscarded(support::ReadFile(file));
        const bool isComplete = collected.is_object() && collected.at("complete") == true;
        return {run, isComplete, isComplete ? collected.at("classes").at(0).at("instances") : json()};
    }

    /// The instances that are to be shown; nothing when nobody can say what was sent.
    static std::optional<std::vector<SentInstance>> Sent(const std::string& body, Way way,
                                                         const std::string& className) {
        try {
            auto sent = ReadSentInstances(body);
            if (way == Way::kExact) {
                sent.erase(std::remove_if(sent.begin(), sent.end(),
                                          [&](const auto& instance) { return instance.className != className; }),
                           sent.end());
            }
            if (way == Way::kInstances) {
                KeepProperties(PropertyNames(className), sent);
            }
            return sent;
        } catch (const UnreadableAnswer&) {
            return std::nullopt;
        }
    }

    static bool HasDoubledPath(const std::vector<SentInstance>& sent) {
        return std::any_of(sent.begin(), sent.end(), [&](const auto& one) {
            return std::count_if(sent.begin(), sent.end(), [&](const auto& other) { return other.path == one.path; }) >
                   1;
        });
    }

    static void Check(const std::optional<std::vector<SentInstance>>& sent, Expectation expectation,
                      const Shown& shown) {
        if (shown.run.status != 0) {
            EXPECT_FALSE(shown.isComplete);
            EXPECT_THAT(shown.run.status, testing::AnyOf(Failure::kServer, Failure::kIncomplete));
            const bool canBeShown = expectation == Expectation::kShown && sent && !HasDoubledPath(*sent);
            EXPECT_FALSE(canBeShown) << "all that was sent can be shown";
            return;
        }
        EXPECT_TRUE(shown.isComplete);
        EXPECT_NE(expectation, Expectation::kRefused) << "something cannot be shown";
        ASSERT_TRUE(sent) << "the answer is not good CIM-XML";
        ASSERT_TRUE(shown.instances.is_array());
        EXPECT_EQ(DifferenceFromSent(*sent, shown.instances), "");
    }

    SchemaServer server_;
    support::TemporaryDirectory directory_;
};

/// Changes in answers with paths alone, of which the program looks at nothing and so has to show all.
class PathMutationTest : public testing::TestWithParam<MutationName> {
  protected:
    void RunOnce(unsigned seed) {
        std::mt19937 random(seed);
        const std::string& className = kClasses[random() % kClasses.size()];
        std::optional<MutatedAnswer> mutated;
        server_.SetChange([&](const std::string& body) {
            mutated = Mutate(body, GetParam().mutation, random);
            return mutated->sent;
        });
        const ProgramRun run =
            RunInProcess({"--host", server_.Address(), "instances", className, "--paths", "-o", "json"});
        const auto bodies = server_.TakeChanged();
        SCOPED_TRACE("seed " + std::to_string(seed) + ", class " + className + ", " + (mutated ? mutated->what : "") +
                     ", status " + std::to_string(run.status) + ": " + run.errors);
        ASSERT_EQ(bodies.size(), 1U);
        if (run.status == 0) {
            EXPECT_THAT(support::ParsedJson(run.output).get<std::vector<std::string>>(),
                        testing::UnorderedElementsAreArray(Expected(bodies.front())));
        } else {
            EXPECT_THAT(run.status, testing::AnyOf(Failure::kServer, Failure::kIncomplete));
            EXPECT_THAT(GetParam().mutation, testing::AnyOf(Mutation::kCut, Mutation::kDoubledInstance));
        }
    }

  private:
    static std::vector<std::string> Expected(const std::string& body) {
        try {
            return ReadSentPaths(body);
        } catch (const UnreadableAnswer& error) {
            ADD_FAILURE() << error.what();
            return {};
        }
    }

    SchemaServer server_;
};

} // namespace

TEST_P(MutationTest, IsShownAsItIsOrRefused) {
    for (unsigned seed = 1; seed <= kRunsOfEachMutation && !HasFailure(); ++seed) {
        RunOnce(seed);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, MutationTest, testing::ValuesIn(kMutations),
                         [](const auto& mutation) { return mutation.param.name; });

TEST_P(PathMutationTest, IsShownAsItIsOrRefused) {
    for (unsigned seed = 1; seed <= kRunsOfEachMutation && !HasFailure(); ++seed) {
        RunOnce(seed);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, PathMutationTest,
                         testing::Values(MutationName{Mutation::kDoubledInstance, "DoubledInstance"},
                                         MutationName{Mutation::kOtherKey, "OtherKey"},
                                         MutationName{Mutation::kNoKey, "NoKey"},
                                         MutationName{Mutation::kUnknownClass, "UnknownClass"},
                                         MutationName{Mutation::kCut, "Cut"}),
                         [](const auto& mutation) { return mutation.param.name; });
