// What the program shows of every class of a server is what the server has sent, nothing more and nothing less. The
// server is seen by three: the program, a reader of its answers that shares nothing with the program, and wbemcli (the
// Debian package sblim-wbemcli), which others have written.

#include "InProcessRun.h"
#include "SecondSchema.h"
#include "SentInstances.h"
#include "server/DemoServer.h"
#include "support/FaultyServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <mutex>
#include <set>
#include <sstream>

using nlohmann::json;
using support::ProgramRun;
using testing::IsSubsetOf;
using testing::UnorderedElementsAreArray;

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr std::size_t kVolumes = 3;

using Lines = std::vector<std::string>;

/// The classes of processes, of which some come and go between any two looks: that which looks is one of them.
bool IsOfProcesses(const std::string& className) {
    const auto hasBelow = [&](const char* live) { return WholeSchema().IsA(live, className); };
    return hasBelow("DEMO_Process") || hasBelow("DEMO_OSProcess") || hasBelow("DEMO_ParentProcess");
}

/// The classes with arrays of embedded objects or with null elements of arrays, of which wbemcli cannot read instances.
/// None of them has a superclass that it could read without them.
bool IsUnreadableToWbemcli(const std::string& className) {
    return std::set<std::string>{"DEMO_AllTypes", "WH_Sample", "WH_DatedSample"}.count(className) != 0;
}

Lines SplitLines(const std::string& text) {
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// A demo server, and before it one that passes everything on and keeps the answers.
class ShownAsSentTest : public testing::Test {
  protected:
    ShownAsSentTest() { witness_.Listen(kHttpPort); }

    static const Lines& ClassNames() {
        static const Lines names = [] {
            Lines result;
            for (const auto* const cls : WholeSchema().Subclasses("", true)) {
                result.push_back(cls->name);
            }
            return result;
        }();
        return names;
    }

    /// The program before the witness.
    static ProgramRun Run(Lines arguments) {
        arguments.insert(arguments.begin(), {"--host", support::LoopbackAddress()});
        return RunInProcess(std::move(arguments));
    }

    static std::string Output(const Lines& arguments) {
        const auto run = Run(arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        return run.output;
    }

    static json Instances(const std::string& className, const Lines& options = {}) {
        Lines arguments{"instances", className, "-o", "json"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return support::ParsedJsonOrDiscarded(Output(arguments));
    }

    static Lines PathsIn(const json& instances) {
        Lines paths;
        for (const json& instance : instances) {
            paths.push_back(instance.at("path"));
        }
        return paths;
    }

    /// The bodies of the answers to an operation since the last call.
    Lines TakeAnswers(const std::string& operation) {
        const std::lock_guard<std::mutex> lock(mutex_);
        Lines answers;
        for (const std::string& answer : std::exchange(answers_, {})) {
            if (answer.find("IMETHODRESPONSE NAME=\"" + operation + '"') != std::string::npos) {
                answers.push_back(answer.substr(answer.find("\r\n\r\n") + 4));
            }
        }
        return answers;
    }

    std::vector<SentInstance> TakeSentInstances() {
        const Lines answers = TakeAnswers("EnumerateInstances");
        EXPECT_EQ(answers.size(), 1U);
        return answers.empty() ? std::vector<SentInstance>() : ReadSentInstances(answers.front());
    }

    std::size_t RequestCount() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return answers_.size();
    }

    // --- wbemcli -------------------------------------------------------------------------------------------------

    static std::string Wbemcli() {
        static const std::string program = support::FindProgram("wbemcli");
        return program;
    }

    /// What wbemcli writes of a class of the server itself, without the name of the server.
    static Lines WbemcliLines(Lines arguments, const std::string& className) {
        const std::string place = support::SecondLoopbackAddress() + ":5988/root/cimv2:";
        arguments.push_back("http://" + place + className);
        const auto run = support::RunProgram(Wbemcli(), arguments);
        EXPECT_EQ(run.status, 0) << run.output << run.errors;
        Lines lines = SplitLines(run.output);
        for (std::string& line : lines) {
            if (line.rfind(place, 0) == 0) {
                line.erase(0, place.size());
            }
        }
        return lines;
    }

    /// The paths that wbemcli names, as the program writes them. Both are led back to an answer of the server.
    static Lines WbemcliPaths(const std::string& className, const std::map<std::string, std::string>& translation) {
        Lines paths;
        for (const std::string& line : WbemcliLines({"ein"}, className)) {
            const auto found = translation.find(line);
            paths.push_back(found == translation.end() ? line : found->second);
        }
        return paths;
    }

    /// The program's text of each path of an answer to EnumerateInstanceNames, by wbemcli's.
    static std::map<std::string, std::string> TranslationOf(const std::string& names) {
        std::map<std::string, std::string> translation;
        const auto theirs = ReadSentPathsAsWbemcliShowsThem(names);
        const auto ours = ReadSentPaths(names);
        std::transform(theirs.begin(), theirs.end(), ours.begin(), std::inserter(translation, translation.end()),
                       [](const std::string& one, const std::string& other) { return std::pair(one, other); });
        return translation;
    }

    /// Path and name of each property that is shown without a value.
    using EmptyProperties = std::set<std::pair<std::string, std::string>>;

    static EmptyProperties EmptyAtWbemcli(const std::string& className,
                                          const std::map<std::string, std::string>& translation) {
        EmptyProperties empty;
        std::string path;
        for (const std::string& line : WbemcliLines({"-nl", "ei"}, className)) {
            const auto found = translation.find(line);
            if (found != translation.end()) {
                path = found->second;
            } else if (!line.empty() && line.front() == '-' && line.back() == '=') {
                empty.emplace(path, line.substr(1, line.size() - 2));
            }
        }
        return empty;
    }

    /// An array without elements is empty at wbemcli, too.
    static EmptyProperties EmptyIn(const json& instances) {
        EmptyProperties empty;
        for (const json& instance : instances) {
            for (const auto& [name, property] : instance.at("properties").items()) {
                if (property.at("value").is_null() || property.at("value") == json::array()) {
                    empty.emplace(instance.at("path"), name);
                }
            }
        }
        return empty;
    }

    support::TemporaryDirectory directory_;

  private:
    static demo::DemoServerOptions Options() {
        demo::DemoServerOptions options;
        options.enumerations.open = 0; // each answer has all instances
        options.address = support::SecondLoopbackAddress();
        options.volumes = kVolumes;
        options.schemas.push_back(SecondSchema());
        return options;
    }

    std::mutex mutex_;
    Lines answers_;
    demo::DemoServer server_{Options()};
    support::FaultyServer witness_{support::SecondLoopbackAddress(), kHttpPort,
                                   [this](support::Connection& client, const std::string& answer) {
                                       {
                                           const std::lock_guard<std::mutex> lock(mutex_);
                                           answers_.push_back(answer);
                                       }
                                       client.Write(answer);
                                   }};
};

/// What is shown and sent, beside what wbemcli shows.
class WbemcliComparisonTest : public ShownAsSentTest {
  protected:
    void SetUp() override {
        if (Wbemcli().empty()) {
            GTEST_SKIP() << "wbemcli is not installed";
        }
    }

    /// The paths of a class, and how to translate those of wbemcli to them.
    struct Paths {
        Lines shown;
        std::map<std::string, std::string> translation;
    };

    Paths ShownPaths(const std::string& className) {
        const Lines shown = SplitLines(Output({"instances", className, "--paths"}));
        const Lines answers = TakeAnswers("EnumerateInstanceNames");
        EXPECT_EQ(answers.size(), 1U);
        return {shown, answers.empty() ? std::map<std::string, std::string>() : TranslationOf(answers.front())};
    }
};

} // namespace

TEST_F(ShownAsSentTest, ShowsEveryInstanceOfEveryClassOnceAndAsItIsSent) {
    for (const std::string& name : ClassNames()) {
        SCOPED_TRACE(name);
        const json shown = Instances(name);
        auto sent = TakeSentInstances();
        KeepProperties(PropertyNames(name), sent);
        EXPECT_EQ(DifferenceFromSent(sent, shown), "");
    }
}

TEST_F(ShownAsSentTest, ShowsWhatSubclassesAddWithDeep) {
    for (const std::string& name : ClassNames()) {
        SCOPED_TRACE(name);
        const json shown = Instances(name, {"--deep"});
        EXPECT_EQ(DifferenceFromSent(TakeSentInstances(), shown), "");
    }
    const json things = Instances("WH_Thing", {"--deep"});
    const auto crate = std::find_if(things.begin(), things.end(),
                                    [](const json& thing) { return thing.at("path") == "WH_Crate.Id=\"crate\""; });
    ASSERT_NE(crate, things.end());
    EXPECT_EQ(crate->at("properties").at("Marks").at("value"), json({"up", "", "this side"}));
}

TEST_F(ShownAsSentTest, ShowsOnlyInstancesOfTheClassItselfWithExact) {
    for (const std::string& name : ClassNames()) {
        SCOPED_TRACE(name);
        const json shown = Instances(name, {"--exact"});
        auto sent = TakeSentInstances();
        sent.erase(std::remove_if(sent.begin(), sent.end(),
                                  [&](const SentInstance& instance) { return instance.className != name; }),
                   sent.end());
        EXPECT_EQ(DifferenceFromSent(sent, shown), "");
    }
}

TEST_F(ShownAsSentTest, ShowsThePathsAloneForOneRequest) {
    for (const std::string& name : ClassNames()) {
        SCOPED_TRACE(name);
        TakeAnswers("");
        const Lines shown = SplitLines(Output({"instances", name, "--paths"}));
        EXPECT_EQ(RequestCount(), 1U);
        const Lines answers = TakeAnswers("EnumerateInstanceNames");
        ASSERT_EQ(answers.size(), 1U);
        EXPECT_THAT(shown, UnorderedElementsAreArray(ReadSentPaths(answers.front())));
    }
}

TEST_F(ShownAsSentTest, NeedsFourRequestsForTheInstancesOfOneClass) {
    Instances("WH_Pallet");
    EXPECT_EQ(RequestCount(), 4U) << "the qualifiers, the class, whether there are portions, and the instances";
}

TEST_F(ShownAsSentTest, CollectsEveryClassAsItIsSent) {
    std::string document = "<vyx version=\"1\">\n";
    for (const std::string& name : ClassNames()) {
        document += "<class name=\"" + name + "\"/>\n";
    }
    const std::string collected = Output({"collect", directory_.WriteFile("requested.xml", document + "</vyx>\n")});
    const json all = support::ParsedJsonOrDiscarded(collected);
    ASSERT_TRUE(all.is_object());
    EXPECT_EQ(all.at("complete"), true);
    const Lines answers = TakeAnswers("EnumerateInstances");
    ASSERT_EQ(answers.size(), ClassNames().size());
    ASSERT_EQ(all.at("classes").size(), ClassNames().size());
    for (std::size_t i = 0; i < answers.size(); ++i) {
        SCOPED_TRACE(ClassNames()[i]);
        EXPECT_EQ(all.at("classes").at(i).at("name"), ClassNames()[i]);
        EXPECT_EQ(DifferenceFromSent(ReadSentInstances(answers[i]), all.at("classes").at(i).at("instances")), "");
    }
}

TEST_F(WbemcliComparisonTest, ThePathsOfEveryClassAreThoseThatWbemcliNames) {
    for (const std::string& name : ClassNames()) {
        if (IsOfProcesses(name)) {
            continue;
        }
        SCOPED_TRACE(name);
        const Paths paths = ShownPaths(name);
        const Lines theirs = WbemcliPaths(name, paths.translation);
        EXPECT_THAT(paths.shown, UnorderedElementsAreArray(theirs));
        EXPECT_THAT(PathsIn(Instances(name)), UnorderedElementsAreArray(theirs));
    }
}

TEST_F(WbemcliComparisonTest, ProcessesThatWbemcliNamesBeforeAndAfterAreThere) {
    for (const std::string& name : ClassNames()) {
        if (!IsOfProcesses(name)) {
            continue;
        }
        SCOPED_TRACE(name);
        Lines before = WbemcliLines({"ein"}, name);
        const Paths paths = ShownPaths(name);
        Lines after = WbemcliLines({"ein"}, name);
        std::sort(before.begin(), before.end());
        std::sort(after.begin(), after.end());
        Lines lasting;
        std::set_intersection(before.begin(), before.end(), after.begin(), after.end(), std::back_inserter(lasting));
        EXPECT_FALSE(lasting.empty());
        for (std::string& line : lasting) {
            const auto found = paths.translation.find(line);
            ASSERT_NE(found, paths.translation.end()) << line;
            line = found->second;
        }
        EXPECT_THAT(lasting, IsSubsetOf(paths.shown));
    }
}

TEST_F(WbemcliComparisonTest, NullsAreWhereWbemcliShowsNothing) {
    std::size_t count = 0;
    for (const std::string& name : ClassNames()) {
        if (IsOfProcesses(name) || IsUnreadableToWbemcli(name)) {
            continue;
        }
        SCOPED_TRACE(name);
        const auto theirs = EmptyAtWbemcli(name, ShownPaths(name).translation);
        EXPECT_EQ(EmptyIn(Instances(name, {"--deep"})), theirs);
        count += theirs.size();
    }
    EXPECT_GT(count, 100U);
}
