// `check`: what a monitoring system reads of it, whatever the server sends.

#include "CimXml.h"
#include "InProcessRun.h"
#include "ProgramRun.h"
#include "server/DemoServer.h"
#include "support/CimServer.h"
#include "support/FaultyServer.h"
#include "support/LoopbackAddress.h"
#include "support/ScriptedServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

namespace {

constexpr std::uint16_t kHttpPort = 5988;

constexpr int kOk = 0;
constexpr int kWarning = 1;
constexpr int kCritical = 2;
constexpr int kUnknown = 3;

using Texts = std::vector<std::string>;

Texts Lines(const std::string& text) {
    Texts lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// One number of performance data.
struct Metric {
    std::string label;
    std::string value;
    std::string unit;
    Texts limits; ///< warning, critical, least, greatest, as far as they are there
};

/// What a monitoring system makes of the output, by the rules of plug-ins and with no code of the program.
struct Reading {
    std::string status; ///< the line before the bar
    std::vector<Metric> metrics;
    Texts more; ///< the lines that follow
    std::string error;
};

/// Reads `'label'=value[unit];…` up to a blank. Returns whether that is what the text has at its beginning.
bool TakeMetric(std::string& text, Metric& metric) {
    static const std::regex kMetric("'([^'=|]+)'=(-?[0-9]+(?:\\.[0-9]+)?)(s|%|B|c|)((?:;[-0-9.:~@]*){0,4})(?: |$)");
    std::smatch match;
    if (!std::regex_search(text, match, kMetric, std::regex_constants::match_continuous)) {
        return false;
    }
    metric = {match[1], match[2], match[3], {}};
    std::istringstream limits(match[4].str());
    std::string limit;
    std::getline(limits, limit, ';'); // nothing before the first
    while (std::getline(limits, limit, ';')) {
        metric.limits.push_back(limit);
    }
    text = match.suffix();
    return true;
}

Reading Read(const std::string& output) {
    Reading reading;
    reading.more = Lines(output);
    if (reading.more.empty()) {
        reading.error = "no line";
        return reading;
    }
    const std::string first = reading.more.front();
    reading.more.erase(reading.more.begin());
    const std::size_t bar = first.find('|');
    reading.status = first.substr(0, bar == std::string::npos ? bar : bar - 1);
    std::string data = bar == std::string::npos ? "" : first.substr(bar + 2);
    std::set<std::string> labels;
    while (!data.empty()) {
        Metric metric;
        if (!TakeMetric(data, metric)) {
            reading.error = "not performance data: " + data;
            return reading;
        }
        reading.error += labels.insert(metric.label).second ? "" : "twice: " + metric.label;
        reading.metrics.push_back(metric);
    }
    return reading;
}

/// A run that must be as a monitoring system needs it.
struct Checked : Reading {
    int exit;
};

Checked Judged(const ProgramRun& run) {
    const Texts names{"OK", "WARNING", "CRITICAL", "UNKNOWN"};
    Checked checked{Read(run.output), run.status};
    EXPECT_EQ(checked.error, "") << run.output;
    EXPECT_EQ(run.errors, "");
    EXPECT_THAT(run.status, testing::AllOf(testing::Ge(kOk), testing::Le(kUnknown))) << run.output;
    if (run.status >= kOk && run.status <= kUnknown) {
        EXPECT_THAT(checked.status, StartsWith(names.at(static_cast<std::size_t>(run.status)) + " - "));
    }
    for (const std::string& line : checked.more) {
        EXPECT_THAT(line, Not(HasSubstr("|")));
        EXPECT_LT(line.size(), 2000U);
    }
    EXPECT_LT(checked.status.size(), 1100U);
    return checked;
}

std::string Units(const std::string& unit) { return QualifierXml("Units", "string", unit); }

std::string StateMap() {
    return QualifierXml("ValueMap", {"0", "2", "3", "6"}) +
           QualifierXml("Values", std::vector<std::string>{"Unknown", "OK", "Degraded", "Error"});
}

/// A server with TEST_Disk: numbers, a state, an array; and CIM_ManagedSystemElement.
class CheckTest : public testing::Test {
  protected:
    CheckTest() {
        server_.Listen(kHttpPort);
        server_.Answer("GetClass", "TEST_Disk",
                       ClassXml("TEST_Disk", "",
                                DeclarationXml("Free", "uint64", Units("KiloBytes")) +
                                    DeclarationXml("Load", "uint16", Units("Percent")) +
                                    DeclarationXml("Age", "uint32", Units("Minutes")) +
                                    DeclarationXml("Reads", "uint64", QualifierXml("Counter", "boolean", "TRUE")) +
                                    DeclarationXml("Plain", "sint32") + DeclarationXml("State", "uint16", StateMap()) +
                                    ArrayDeclarationXml("Status", "uint16", StateMap()) +
                                    ArrayDeclarationXml("Speeds", "uint32") + DeclarationXml("Text", "string") +
                                    DeclarationXml("When", "datetime")));
        server_.Answer("GetClass", "CIM_ManagedSystemElement",
                       ClassXml("CIM_ManagedSystemElement", "",
                                DeclarationXml("ElementName", "string") + DeclarationXml("HealthState", "uint16") +
                                    ArrayDeclarationXml("OperationalStatus", "uint16", StateMap())));
        SetDisks(Disk("a", "100", "2") + Disk("b", "50", "3"));
    }

    static std::string Disk(const std::string& name, const std::string& free, const std::string& state,
                            const std::string& more = {}) {
        return InstanceXml("TEST_Disk", name,
                           PropertyXml("Free", "uint64", free) + PropertyXml("State", "uint16", state) + more);
    }

    static std::string Element(const std::string& name, const std::string& health, const Texts& status,
                               const std::string& label = {}) {
        return InstanceXml("CIM_ManagedSystemElement", name,
                           PropertyXml("HealthState", "uint16", health) + PropertyXml("ElementName", "string", label) +
                               (status.empty() ? "" : ArrayXml("OperationalStatus", "uint16", status)));
    }

    void SetDisks(const std::string& instances) { server_.Answer("EnumerateInstances", "TEST_Disk", instances); }

    void SetElements(const std::string& instances) {
        server_.Answer("EnumerateInstances", "CIM_ManagedSystemElement", instances);
    }

    Checked Check(Texts arguments) const {
        arguments.insert(arguments.begin(), {"--host", server_.Address(), "check"});
        return Judged(RunInProcess(std::move(arguments)));
    }

    Checked CheckDisks(Texts options) const {
        options.insert(options.begin(), "TEST_Disk");
        return Check(std::move(options));
    }

    support::CimServer server_;
};

} // namespace

TEST_F(CheckTest, EachStateHasItsExitStatusAndOneLine) {
    const auto ok = CheckDisks({"--warning", "Free=10:"});
    EXPECT_EQ(ok.exit, kOk);
    EXPECT_EQ(ok.status, "OK - 2 instances of TEST_Disk");
    EXPECT_THAT(ok.more, IsEmpty());

    const auto warning = CheckDisks({"--warning", "Free=60:", "--critical", "Free=10:"});
    EXPECT_EQ(warning.exit, kWarning);
    EXPECT_EQ(warning.status, "WARNING - 1 warning of 2 instances of TEST_Disk; b: Free is 50 KiB, threshold 60:");
    EXPECT_THAT(warning.more, ElementsAre("WARNING: b: Free is 50 KiB, threshold 60: (TEST_Disk.Name=\"b\")"));

    const auto critical = CheckDisks({"--warning", "Free=200:", "--critical", "Free=60:"});
    EXPECT_EQ(critical.exit, kCritical);
    EXPECT_EQ(critical.status,
              "CRITICAL - 1 critical, 1 warning of 2 instances of TEST_Disk; b: Free is 50 KiB, threshold 60:");
    EXPECT_THAT(critical.more, SizeIs(2));

    const auto unknown = Check({"TEST_Tape"});
    EXPECT_EQ(unknown.exit, kUnknown);
    EXPECT_THAT(unknown.status, HasSubstr("there is no class TEST_Tape"));
}

TEST_F(CheckTest, PerformanceDataIsInBaseUnits) {
    SetDisks(InstanceXml("TEST_Disk", "a",
                         PropertyXml("Free", "uint64", "2") + PropertyXml("Load", "uint16", "45") +
                             PropertyXml("Age", "uint32", "3") + PropertyXml("Reads", "uint64", "7") +
                             PropertyXml("Plain", "sint32", "-5") + ArrayXml("Speeds", "uint32", {"1", "2"})));
    const auto checked =
        CheckDisks({"--warning", "Free=1KiB:", "--critical", "Free=1:", "--warning", "Load=80", "--warning", "Age=~:1h",
                    "--warning", "Reads=10", "--critical", "Plain=@1:2", "--warning", "Speeds=5"});
    EXPECT_EQ(checked.exit, kOk);
    Texts found;
    for (const Metric& metric : checked.metrics) {
        std::string text = metric.label + '=' + metric.value + metric.unit;
        for (const std::string& limit : metric.limits) {
            text += ';' + limit;
        }
        found.push_back(text);
    }
    EXPECT_THAT(found, ElementsAre("a Free=2048B;1024:;1024:", "a Plain=-5;;@1:2", "a Load=45%;80", "a Age=180s;~:3600",
                                   "a Reads=7c;10", "a Speeds[0]=1;5", "a Speeds[1]=2;5"));
    EXPECT_THAT(checked.status, HasSubstr("; a: Free is 2 KiB, Plain is -5, Load is 45 %, Age is 3 min"));
}

TEST_F(CheckTest, StatesAreComparedByValueAndByText) {
    EXPECT_EQ(CheckDisks({"--critical", "State!=OK"}).exit, kCritical);
    EXPECT_EQ(CheckDisks({"--warning", "State=Degraded"}).exit, kWarning);
    EXPECT_EQ(CheckDisks({"--warning", "State=3"}).exit, kWarning);
    EXPECT_EQ(CheckDisks({"--warning", "State=6"}).exit, kOk);
    EXPECT_EQ(CheckDisks({"--warning", "State>=3"}).exit, kWarning);
    EXPECT_EQ(CheckDisks({"--warning", "State=~:2"}).exit, kWarning) << "with a colon it is a range";
    EXPECT_EQ(CheckDisks({"--warning", "State=2:3"}).exit, kOk);
    EXPECT_EQ(CheckDisks({"--warning", "Name=[ab]"}).exit, kWarning);
    const auto checked = CheckDisks({"--critical", "State!=OK"});
    EXPECT_THAT(checked.more, ElementsAre("CRITICAL: b: State is Degraded (TEST_Disk.Name=\"b\")"));
    EXPECT_THAT(checked.metrics, IsEmpty());
}

TEST_F(CheckTest, AnyElementOfAnArrayCountsAsForWhere) {
    SetDisks(Disk("a", "1", "2", ArrayXml("Status", "uint16", {"2", "3"})));
    EXPECT_EQ(CheckDisks({"--warning", "Status=Degraded"}).exit, kWarning);
    EXPECT_EQ(CheckDisks({"--warning", "Status!=OK"}).exit, kOk);
    SetDisks(Disk("a", "1", "2", ArrayXml("Speeds", "uint32", {"5", "50"})));
    EXPECT_EQ(CheckDisks({"--warning", "Speeds=10"}).exit, kWarning);
    SetDisks(Disk("a", "1", "2", ArrayXml("Speeds", "uint32", {"5", "<null>"})));
    EXPECT_EQ(CheckDisks({"--warning", "Speeds=10"}).exit, kUnknown);
}

TEST_F(CheckTest, ANullIsUnknownAndNamed) {
    SetDisks(Disk("a", "", "") + Disk("b", "50", "2") + Disk("c", "", "2"));
    const auto checked = CheckDisks({"--warning", "Free=10:"});
    EXPECT_EQ(checked.exit, kUnknown);
    EXPECT_EQ(checked.status, "UNKNOWN - 2 unknown of 3 instances of TEST_Disk; a: Free is null");
    EXPECT_THAT(checked.more, ElementsAre("UNKNOWN: a: Free is null (TEST_Disk.Name=\"a\")",
                                          "UNKNOWN: c: Free is null (TEST_Disk.Name=\"c\")"));
    EXPECT_THAT(checked.metrics, SizeIs(1));
    EXPECT_EQ(CheckDisks({"--critical", "State!=OK"}).exit, kUnknown);
    EXPECT_EQ(CheckDisks({"--critical", "Free=100:"}).exit, kCritical) << "what is known to be wrong comes first";
    EXPECT_EQ(CheckDisks({"--critical", "Free="}).exit, kCritical) << "asks for null";
}

TEST_F(CheckTest, AValueThatCannotBeReadIsUnknown) {
    SetDisks(Disk("a", "100", "2") + Disk("b", "many", "2"));
    const auto checked = CheckDisks({"--warning", "Free=10:"});
    EXPECT_EQ(checked.exit, kUnknown);
    EXPECT_THAT(checked.more, testing::Contains(HasSubstr("could not be taken over")));
    EXPECT_EQ(CheckDisks({"--critical", "Free=200:"}).exit, kCritical);
}

TEST_F(CheckTest, WithoutThresholdsItChecksThatThereAreInstances) {
    EXPECT_EQ(CheckDisks({}).status, "OK - 2 instances of TEST_Disk");
    EXPECT_EQ(CheckDisks({"--where", "Name=a"}).status, "OK - 1 instance of TEST_Disk");
    const auto none = CheckDisks({"--where", "Name=x"});
    EXPECT_EQ(none.exit, kUnknown);
    EXPECT_EQ(none.status, "UNKNOWN - none of the 2 instances of TEST_Disk matches --where");
    SetDisks("");
    EXPECT_EQ(CheckDisks({}).status, "UNKNOWN - there is no instance of TEST_Disk");
}

TEST_F(CheckTest, WhatIsIgnoredIsCounted) {
    const auto checked = CheckDisks({"--warning", "Free=60:", "--ignore", "B"});
    EXPECT_EQ(checked.exit, kOk);
    EXPECT_EQ(checked.status, "OK - 1 instance of TEST_Disk, 1 ignored; a: Free is 100 KiB");
    EXPECT_THAT(checked.metrics, SizeIs(1));
    EXPECT_EQ(CheckDisks({"--warning", "Free=60:", "--ignore", "*Name=\"b\""}).exit, kOk) << "by the path";
    EXPECT_EQ(CheckDisks({"--warning", "Free=60:", "--ignore", "x"}).exit, kWarning);
    const auto none = CheckDisks({"--ignore", "TEST_*"});
    EXPECT_EQ(none.exit, kUnknown);
    EXPECT_THAT(none.status, HasSubstr("all 2 instances of TEST_Disk are ignored"));
}

TEST_F(CheckTest, WrongArgumentsAreUnknown) {
    const std::vector<Texts> all{{},
                                 {"TEST_Disk", "--bogus"},
                                 {"TEST_Disk", "more"},
                                 {"TEST_Disk", "--warning"},
                                 {"TEST_Disk", "--warning", "Free"},
                                 {"TEST_Disk", "--warning", "Free=abc"},
                                 {"TEST_Disk", "--warning", "Free=20:10"},
                                 {"TEST_Disk", "--warning", "Nothing=1"},
                                 {"TEST_Disk", "--critical", "Free<x"},
                                 {"TEST_Disk", "--where", "Nothing=1"},
                                 {"TEST_Disk", "-o", "json"},
                                 {"TEST_Disk", "--timeout", "0"},
                                 {"TEST_Disk", "--timeout"},
                                 {"TEST_Disk", "--password-file", "/nowhere/at/all"},
                                 {"TEST_Disk", "--tls", "--ca", "/nowhere/at/all"},
                                 {"TEST_Disk", "--plugin", "/nowhere.so"},
                                 {"not a class"},
                                 {"health", "--warning", "HealthState=1"}};
    for (const Texts& arguments : all) {
        const auto checked = Check(arguments);
        EXPECT_EQ(checked.exit, kUnknown) << testing::PrintToString(arguments);
        EXPECT_THAT(checked.more, IsEmpty());
    }
    EXPECT_THAT(CheckDisks({"--warning", "Free=abc"}).status, HasSubstr("'abc' is no range for the numbers of Free"));
    EXPECT_THAT(CheckDisks({"--warning", "Nothing=1"}).status, HasSubstr("has no property Nothing"));
}

TEST_F(CheckTest, OtherCommandsKeepTheirStatuses) {
    const auto run = RunInProcess({"--host", server_.Address(), "instances", "TEST_Tape"});
    EXPECT_EQ(run.status, 5);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(RunInProcess({"instances", "--bogus"}).status, 2);
}

TEST_F(CheckTest, RecordsLikeAnyOtherCommand) {
    const auto checked =
        Judged(RunInProcess({"--host", server_.Address(), "record", "/nowhere/x", "check", "--bogus"}));
    EXPECT_EQ(checked.exit, kUnknown);
}

TEST_F(CheckTest, AUnitThatThePropertyDoesNotHaveIsUnknown) {
    const auto checked = CheckDisks({"--warning", "Free=10s:"});
    EXPECT_EQ(checked.exit, kUnknown);
    EXPECT_THAT(checked.more, testing::Contains(HasSubstr("Free is 100 KiB, which 10s: is no range for")));
    for (const Metric& metric : checked.metrics) {
        EXPECT_THAT(metric.limits, IsEmpty());
    }
}

TEST_F(CheckTest, HostileTextsStayInTheirPlace) {
    const std::string nasty = "x|'a'=1;2 = &quot;q&quot; ''&#10;OK - fine&#13;&#9;&#27;[31m\xE2\x80\xAE|";
    SetDisks(Disk(nasty, "1", "2", PropertyXml("Text", "string", nasty)) +
             Disk(nasty + "2", "1", "2", PropertyXml("Text", "string", std::string(1 << 20, '|'))) +
             Disk(std::string(1 << 20, '\''), "1", "2", PropertyXml("Text", "string", "x")));
    const auto checked = CheckDisks({"--critical", "Text=*", "--warning", "Free=10:"});
    EXPECT_EQ(checked.exit, kCritical);
    EXPECT_THAT(checked.more, SizeIs(3));
    EXPECT_THAT(checked.metrics, SizeIs(3));
    for (const std::string& line : checked.more) {
        EXPECT_THAT(line, StartsWith("CRITICAL: "));
        EXPECT_THAT(line, Not(HasSubstr("\x1b")));
        EXPECT_THAT(line, Not(HasSubstr("\xE2\x80\xAE")));
    }
}

TEST_F(CheckTest, HostileErrorsOfAServerAreOneLine) {
    server_.Fail("EnumerateInstances", "TEST_Disk", 1, "a|b&#10;OK - fine" + std::string(1 << 20, 'x'));
    const auto checked = CheckDisks({});
    EXPECT_EQ(checked.exit, kUnknown);
    EXPECT_THAT(checked.more, IsEmpty());
}

TEST_F(CheckTest, LinesAreBoundedAndTheRestIsCounted) {
    std::string disks;
    for (int i = 0; i < 70; ++i) {
        disks += Disk("d" + std::to_string(i), "1", "2");
    }
    SetDisks(disks);
    const auto checked = CheckDisks({"--critical", "Free=10:"});
    EXPECT_THAT(checked.status, StartsWith("CRITICAL - 70 critical of 70 instances of TEST_Disk; "));
    ASSERT_THAT(checked.more, SizeIs(51));
    EXPECT_EQ(checked.more.back(), "CRITICAL: 20 more");
    EXPECT_THAT(checked.metrics, SizeIs(70));
}

TEST_F(CheckTest, AsksForNoMorePropertiesThanItNeeds) {
    CheckDisks({"--warning", "Free=10:"});
    EXPECT_EQ(server_.Calls().back().parameters.at("PropertyList"), "Name,Free");
}

TEST_F(CheckTest, NobodyIsAskedForAPassword) {
    const auto run = RunCimhttpOnTerminal({"--host", server_.Address(), "--user", "me", "check", "TEST_Disk"});
    EXPECT_EQ(run.status, kUnknown);
    EXPECT_THAT(run.output, StartsWith("UNKNOWN - the user me needs a password"));
    EXPECT_EQ(run.errors, "");
}

TEST_F(CheckTest, ARefusedLoginIsUnknown) {
    server_.RequireUser("me", "secret");
    const auto checked = CheckDisks({});
    EXPECT_EQ(checked.exit, kUnknown);
    EXPECT_THAT(checked.status, HasSubstr("user"));
    const auto run =
        RunCimhttp({"--host", server_.Address(), "--user", "me", "check", "TEST_Disk"}, {"CIMHTTP_PASSWORD=wrong"});
    EXPECT_EQ(Judged(run).exit, kUnknown);
}

TEST_F(CheckTest, AServerThatIsNotThereIsUnknown) {
    server_.Stop();
    const auto checked = CheckDisks({});
    EXPECT_EQ(checked.exit, kUnknown);
    EXPECT_THAT(checked.status, HasSubstr("no connection to"));
}

TEST(CheckTimeoutTest, BoundsTheWholeCheckWhateverTheServerDoes) {
    support::ScriptedServer silent([](support::Connection& peer) { peer.WaitForPeerClose(); });
    silent.Listen(kHttpPort);
    const auto checked = Judged(RunCimhttp({"--host", silent.Address(), "--timeout", "1", "check", "health"}));
    EXPECT_EQ(checked.exit, kUnknown);
    EXPECT_THAT(checked.more, IsEmpty());
    // The first request has all of that time, so it may be that one that says so.
    EXPECT_THAT(checked.status, AnyOf(HasSubstr("within 1 s"), HasSubstr("no complete answer came within")));
}

TEST_F(CheckTest, ATimeoutBoundsAnswersWithoutEndOfWhichEachIsInTime) {
    const std::string disk = "<VALUE.INSTANCEWITHPATH><INSTANCEPATH><NAMESPACEPATH><HOST>far</HOST><LOCALNAMESPACEPATH>"
                             "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH>"
                             "</NAMESPACEPATH>" +
                             PathXml("TEST_Disk", "a") + "</INSTANCEPATH>" + BareInstanceXml("TEST_Disk", "a") +
                             "</VALUE.INSTANCEWITHPATH>";
    server_.AnswerPortion("OpenEnumerateInstances", "TEST_Disk", disk, "more");
    server_.AnswerPortion("PullInstancesWithPath", "more", disk, "more");
    const auto checked = Judged(RunCimhttp({"--host", server_.Address(), "--timeout", "1", "check", "TEST_Disk"}));
    EXPECT_EQ(checked.exit, kUnknown);
    EXPECT_THAT(checked.status, HasSubstr("has not ended within 1 s"));
    EXPECT_THAT(checked.more, IsEmpty());
}

TEST_F(CheckTest, AnUnverifiedServerIsARemarkAfterTheStatus) {
    support::CimServer encrypted(server_.Address());
    const support::TestCertificate certificate{support::TestCertificate::Options()};
    encrypted.ListenTls(5989, certificate);
    encrypted.Answer("GetClass", "TEST_Disk", ClassXml("TEST_Disk", ""));
    encrypted.Answer("EnumerateInstances", "TEST_Disk", InstanceXml("TEST_Disk", "a"));
    const auto checked = Check({"TEST_Disk", "--tls"});
    EXPECT_EQ(checked.exit, kOk);
    EXPECT_THAT(checked.more, ElementsAre(HasSubstr("nobody has verified")));
}

TEST_F(CheckTest, HealthIsTheWorseOfBothStates) {
    SetElements(Element("a", "5", {"2"}) + Element("b", "10", {"2"}, "Fan 3") + Element("c", "5", {"2", "6"}) +
                Element("d", "0", {"0"}) + Element("e", "", {}));
    const auto checked = Check({"health"});
    EXPECT_EQ(checked.exit, kCritical);
    EXPECT_EQ(checked.status, "CRITICAL - 1 critical, 1 warning of 5 elements, 3 tell their health; "
                              "CIM_ManagedSystemElement c: OperationalStatus is OK, Error");
    EXPECT_THAT(checked.more, ElementsAre("CRITICAL: CIM_ManagedSystemElement c: OperationalStatus is OK, Error "
                                          "(CIM_ManagedSystemElement.Name=\"c\")",
                                          "WARNING: CIM_ManagedSystemElement Fan 3: HealthState is 10 "
                                          "(CIM_ManagedSystemElement.Name=\"b\")"));
    Texts numbers;
    for (const Metric& metric : checked.metrics) {
        numbers.push_back(metric.label + '=' + metric.value + metric.unit);
    }
    EXPECT_THAT(numbers, ElementsAre("elements=5", "ok=1", "warning=1", "critical=1"));
}

TEST_F(CheckTest, EachStateOfHealthMeansWhatTheManualSays) {
    const auto exitOf = [&](const std::string& health, const Texts& status) {
        SetElements(Element("well", "5", {}) + Element("it", health, status));
        return Check({"health"}).exit;
    };
    for (const auto& [exit, states] : std::vector<std::pair<int, Texts>>{{kOk, {"0", "5", "7", "35", "32768", "65535"}},
                                                                         {kWarning, {"10", "15"}},
                                                                         {kCritical, {"20", "25", "30"}}}) {
        for (const std::string& state : states) {
            EXPECT_EQ(exitOf(state, {}), exit) << state;
        }
    }
    for (const auto& [exit, states] : std::vector<std::pair<int, Texts>>{
             {kOk, {"0", "1", "2", "8", "9", "10", "11", "15", "17", "18", "19", "32768"}},
             {kWarning, {"3", "4", "5", "12", "16"}},
             {kCritical, {"6", "7", "13", "14"}}}) {
        for (const std::string& state : states) {
            EXPECT_EQ(exitOf("", {state}), exit) << state;
        }
    }
}

TEST_F(CheckTest, HealthThatNobodyTellsIsNotInvented) {
    SetElements(Element("a", "0", {"10"}) + Element("b", "", {}));
    const auto checked = Check({"health"});
    EXPECT_EQ(checked.exit, kUnknown);
    EXPECT_THAT(checked.status, HasSubstr("of 2 elements, 0 tell their health; no element tells its health"));
    SetElements(Element("a", "0", {"10"}) + Element("b", "5", {}));
    EXPECT_EQ(Check({"health"}).status, "OK - 2 elements, 1 tells its health");
    SetElements("");
    EXPECT_EQ(Check({"health"}).exit, kUnknown);
}

TEST_F(CheckTest, KnownFaultsAreIgnored) {
    SetElements(Element("a", "5", {}) + Element("b", "30", {}, "Fan 3") + Element("c", "30", {}, "Fan 4"));
    EXPECT_EQ(Check({"health"}).exit, kCritical);
    const auto checked = Check({"health", "--ignore", "Fan 3", "--ignore", "c"});
    EXPECT_EQ(checked.exit, kOk);
    EXPECT_EQ(checked.status, "OK - 1 element, 1 tells its health, 2 ignored");
}

TEST_F(CheckTest, AStateThatCannotBeReadIsUnknownUnlessSomethingIsWorse) {
    SetElements(Element("a", "5", {}) + Element("b", "fine", {}));
    EXPECT_EQ(Check({"health"}).exit, kUnknown);
    SetElements(Element("a", "10", {}) + Element("b", "fine", {}));
    EXPECT_EQ(Check({"health"}).exit, kWarning);
}

TEST_F(CheckTest, HealthInAnotherCaseIsAClass) {
    server_.Answer("GetClass", "Health", ClassXml("Health", ""));
    server_.Answer("EnumerateInstances", "Health", InstanceXml("Health", "a"));
    EXPECT_EQ(Check({"Health"}).status, "OK - 1 instance of Health");
}

TEST(CheckDemoServerTest, FindsTheFansThatAreNotWell) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.schemas.push_back({CIMHTTP_FANS, ReadFile(CIMHTTP_FANS)});
    const demo::DemoServer server(options);
    const auto run = [](Texts arguments) {
        arguments.insert(arguments.begin(), {"--host", support::LoopbackAddress(), "check"});
        return Judged(RunInProcess(std::move(arguments)));
    };
    const auto health = run({"health"});
    EXPECT_EQ(health.exit, kCritical);
    EXPECT_THAT(
        health.more,
        ElementsAre("CRITICAL: EXAMPLE_Fan Fan 3: HealthState is Critical failure, OperationalStatus is Error "
                    "(EXAMPLE_Fan.…,DeviceID=\"fan-3\")",
                    "WARNING: EXAMPLE_Fan Fan 2: HealthState is Degraded/Warning, OperationalStatus is Degraded "
                    "(EXAMPLE_Fan.…,DeviceID=\"fan-2\")"));
    EXPECT_EQ(run({"health", "--ignore", "Fan 3"}).exit, kWarning);
    EXPECT_EQ(run({"health", "--ignore", "Fan 3", "--ignore", "fan-2"}).exit, kOk) << "by the key, which is not read";
    EXPECT_EQ(run({"EXAMPLE_Fan", "--critical", "Speed=1000rpm:"}).exit, kCritical);
}

TEST(CheckDemoServerTest, ChecksARichSchema) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.volumes = 3;
    const demo::DemoServer server(options);
    const auto run = [](Texts arguments) {
        arguments.insert(arguments.begin(), {"--host", support::LoopbackAddress(), "check"});
        return Judged(RunInProcess(std::move(arguments)));
    };
    const auto health = run({"health"});
    EXPECT_EQ(health.exit, kOk) << health.status;
    EXPECT_THAT(health.status, testing::MatchesRegex("OK - [0-9]+ elements, [0-9]+ tell their health"));
    EXPECT_EQ(run({"CIM_StorageVolume", "--critical", "OperationalStatus!=OK"}).status,
              "OK - 3 instances of CIM_StorageVolume");
    const auto memory = run({"CIM_OperatingSystem", "--warning", "FreePhysicalMemory=0:"});
    EXPECT_EQ(memory.exit, kOk);
    ASSERT_THAT(memory.metrics, SizeIs(1));
    EXPECT_EQ(memory.metrics.front().unit, "B");
    EXPECT_EQ(run({"CIM_OperatingSystem", "--critical", "FreePhysicalMemory=1EB:"}).exit, kCritical);
}
