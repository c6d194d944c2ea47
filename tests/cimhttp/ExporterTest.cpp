// What Prometheus gets from the exporter, whatever the servers do.

#include "CimXml.h"
#include "ExporterFixture.h"
#include "support/CimServer.h"
#include "support/FaultyServer.h"
#include "support/LoopbackAddress.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <sstream>
#include <thread>

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr const char* kFans = "modules: {fans: [{class: TEST_Fan, metrics: [Speed]}]}";

std::size_t CountOf(const std::vector<support::CimServer::Call>& calls, const std::string& method) {
    return static_cast<std::size_t>(
        std::count_if(calls.begin(), calls.end(), [&](const auto& call) { return call.method == method; }));
}

/// A server with one class TEST_Disk, which the test declares.
void AnswerWithDisks(support::CimServer& server, const std::string& declarations, const std::string& instances) {
    for (const char* const name : {"Key", "Counter"}) {
        server.Answer("GetQualifier", name, QualifierDeclarationXml(name, "boolean"));
    }
    for (const char* const name : {"Units", "PUnit", "Description"}) {
        server.Answer("GetQualifier", name, QualifierDeclarationXml(name, "string"));
    }
    for (const char* const name : {"ValueMap", "Values"}) {
        server.Answer("GetQualifier", name, QualifierDeclarationXml(name, "string", true));
    }
    server.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_Disk\"/>");
    server.Answer("GetClass", "TEST_Disk", ClassXml("TEST_Disk", "", declarations));
    server.Answer("EnumerateInstances", "TEST_Disk", instances);
}

class ExporterTest : public ExporterFixture {
  protected:
    support::CimServer& AddDisks(const std::string& declarations, const std::string& instances) {
        support::CimServer& server = fleet_.Add("disks", {});
        AnswerWithDisks(server, declarations, instances);
        return server;
    }
};

TEST_F(ExporterTest, GivesANumberOfEachInstance) {
    fleet_.Add("rack1", {"left", "right"});
    Start(kFans);
    const auto answer = Ask("/probe?target=rack1&module=fans");
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.get_header_value("Content-Type"), "text/plain; version=0.0.4; charset=utf-8");
    EXPECT_THAT(answer.body, HasSubstr("# TYPE test_fan_speed gauge\n"));
    EXPECT_THAT(Lines(answer.body),
                IsSupersetOf({"cim_up 1", "test_fan_speed{name=\"left\"} 3", "test_fan_speed{name=\"right\"} 3",
                              "cim_class_instances{class=\"TEST_Fan\"} 2", "cim_class_up{class=\"TEST_Fan\"} 1",
                              "cim_errors{kind=\"class\"} 0", "cim_null_values 0", "cim_series 2"}));
    EXPECT_THAT(answer.body, AllOf(HasSubstr("\ncim_scrape_duration_seconds "), HasSubstr("\ncim_requests "),
                                   HasSubstr("\ncim_bytes{direction=\"received\"} ")));
}

TEST_F(ExporterTest, CountsRequestsAndBytesAsTheServerDoes) {
    support::CimServer& server = fleet_.Add("rack1", {"left"});
    Start(kFans);
    Probe("rack1", "fans");
    server.ForgetCalls();
    const auto lines = Probe("rack1", "fans");
    const auto calls = server.Calls();
    std::size_t sent = 0;
    for (const auto& call : calls) {
        sent += call.http.body.size();
    }
    EXPECT_THAT(lines, Contains("cim_requests " + std::to_string(calls.size())));
    EXPECT_THAT(lines, Contains("cim_bytes{direction=\"sent\"} " + std::to_string(sent)));
}

TEST_F(ExporterTest, NumbersAreInBaseUnitsAndCountersAreCalledSo) {
    AddDisks(DeclarationXml("Free", "uint64", QualifierXml("PUnit", "string", "byte * 2^10")) +
                 DeclarationXml("Busy", "uint8", QualifierXml("Units", "string", "Percent")) +
                 DeclarationXml("Clock", "uint32", QualifierXml("Units", "string", "MegaHertz")) +
                 DeclarationXml("Rate", "uint64", QualifierXml("PUnit", "string", "bit / second")) +
                 DeclarationXml("Waited", "uint64", QualifierXml("PUnit", "string", "second * 10^-3")) +
                 DeclarationXml("Reads", "uint64", QualifierXml("Counter", "boolean", "TRUE")) +
                 DeclarationXml("Written", "uint64",
                                QualifierXml("Counter", "boolean", "TRUE") + QualifierXml("PUnit", "string", "byte")) +
                 DeclarationXml("Spare", "boolean") + DeclarationXml("Since", "datetime") +
                 DeclarationXml("Age", "datetime") + ArrayDeclarationXml("Errors", "uint16"),
             InstanceXml("TEST_Disk", "sda",
                         PropertyXml("Free", "uint64", "3") + PropertyXml("Busy", "uint8", "50") +
                             PropertyXml("Clock", "uint32", "7") + PropertyXml("Rate", "uint64", "16") +
                             PropertyXml("Waited", "uint64", "2500") + PropertyXml("Reads", "uint64", "9") +
                             PropertyXml("Written", "uint64", "18446744073709551615") +
                             PropertyXml("Spare", "boolean", "TRUE") +
                             PropertyXml("Since", "datetime", "19700101010000.500000+060") +
                             PropertyXml("Age", "datetime", "00000001000001.250000:000") +
                             ArrayXml("Errors", "uint16", {"4", "<null>", "6"})));
    Start("modules: {disks: [{class: TEST_Disk, metrics: [Free, Busy, Clock, Rate, Waited, Reads, Written, Spare, "
          "Since, Age, Errors]}]}");
    const auto answer = Ask("/probe?target=disks&module=disks");
    EXPECT_THAT(
        Lines(answer.body),
        IsSupersetOf({"test_disk_free_bytes{name=\"sda\"} 3072", "test_disk_busy_ratio{name=\"sda\"} 0.5",
                      "test_disk_clock_hertz{name=\"sda\"} 7000000", "test_disk_rate_bytes_per_second{name=\"sda\"} 2",
                      "test_disk_waited_seconds{name=\"sda\"} 2.5", "test_disk_reads_total{name=\"sda\"} 9",
                      "test_disk_written_bytes_total{name=\"sda\"} 1.844674407370955e+19",
                      "test_disk_spare{name=\"sda\"} 1", "test_disk_since_timestamp_seconds{name=\"sda\"} 0.5",
                      "test_disk_age_seconds{name=\"sda\"} 86401.25", "test_disk_errors{name=\"sda\",index=\"0\"} 4",
                      "test_disk_errors{name=\"sda\",index=\"2\"} 6"}))
        << answer.body;
    EXPECT_THAT(answer.body, HasSubstr("# TYPE test_disk_reads_total counter\n"));
    EXPECT_THAT(answer.body, HasSubstr("# TYPE test_disk_free_bytes gauge\n"));
}

TEST_F(ExporterTest, ADateTimeThatLeavesOutSecondsIsNoNumber) {
    AddDisks(DeclarationXml("Since", "datetime"),
             InstanceXml("TEST_Disk", "sda", PropertyXml("Since", "datetime", "20261123******.******+000")));
    Start("modules: {disks: [{class: TEST_Disk, metrics: [Since]}]}");
    const auto lines = Probe("disks", "disks");
    EXPECT_THAT(lines, Not(Contains(StartsWith("test_disk_since"))));
    EXPECT_THAT(lines, Contains("cim_errors{kind=\"value\"} 1"));
}

TEST_F(ExporterTest, ANumberThatTheTextFormatHasNotIsAProblemAndNoSeries) {
    AddDisks(DeclarationXml("Free", "real64"),
             InstanceXml("TEST_Disk", "sda", PropertyXml("Free", "real64", "1.7976931348623157e308")) +
                 InstanceXml("TEST_Disk", "sdb", PropertyXml("Free", "real64", "-1e308")));
    Start("modules: {disks: [{class: TEST_Disk, metrics: [Free]}]}");
    EXPECT_THAT(Probe("disks", "disks"),
                IsSupersetOf({"cim_errors{kind=\"value\"} 1", "test_disk_free{name=\"sdb\"} -1e+308", "cim_series 1"}));
}

std::string StatusDeclaration() {
    return ArrayDeclarationXml("Status", "uint16",
                               QualifierXml("ValueMap", std::vector<std::string>{"2", "3", "6"}) +
                                   QualifierXml("Values", std::vector<std::string>{"OK", "Degraded", "Error"}));
}

TEST_F(ExporterTest, AValueMapBecomesASeriesForEachState) {
    AddDisks(StatusDeclaration(), InstanceXml("TEST_Disk", "sda", ArrayXml("Status", "uint16", {"2", "3"})) +
                                      InstanceXml("TEST_Disk", "sdb", ArrayXml("Status", "uint16", {"17"})));
    Start("modules: {disks: [{class: TEST_Disk, metrics: [Status]}]}");
    EXPECT_THAT(Probe("disks", "disks"),
                IsSupersetOf({"test_disk_status{name=\"sda\",state=\"OK\"} 1",
                              "test_disk_status{name=\"sda\",state=\"Degraded\"} 1",
                              "test_disk_status{name=\"sda\",state=\"Error\"} 0",
                              "test_disk_status{name=\"sdb\",state=\"OK\"} 0",
                              "test_disk_status{name=\"sdb\",state=\"17\"} 1", "cim_series 7"}));
}

TEST_F(ExporterTest, StatesThatTheModuleDoesNotNameAreOther) {
    AddDisks(StatusDeclaration(), InstanceXml("TEST_Disk", "sda", ArrayXml("Status", "uint16", {"6"})));
    Start("modules: {disks: [{class: TEST_Disk, metrics: [{property: Status, states: [OK]}]}]}");
    EXPECT_THAT(Probe("disks", "disks"),
                IsSupersetOf({"test_disk_status{name=\"sda\",state=\"OK\"} 0",
                              "test_disk_status{name=\"sda\",state=\"other\"} 1", "cim_series 2"}));
}

TEST_F(ExporterTest, AModuleNamesMetricsAndLabels) {
    AddDisks(DeclarationXml("Free", "uint64") + DeclarationXml("Model", "string"),
             InstanceXml("TEST_Disk", "sda", PropertyXml("Free", "uint64", "3") + PropertyXml("Model", "string", "M")));
    Start("modules:\n  disks:\n    - class: TEST_Disk\n      labels: [{disk: Name}, Model, $class, $path]\n"
          "      metrics: [{property: Free, name: disk_free, type: counter, help: What is left}]\n");
    const auto answer = Ask("/probe?target=disks&module=disks");
    EXPECT_THAT(answer.body, HasSubstr("# HELP disk_free_total What is left\n# TYPE disk_free_total counter\n"));
    EXPECT_THAT(
        Lines(answer.body),
        Contains("disk_free_total{disk=\"sda\",model=\"M\",class=\"TEST_Disk\",path=\"TEST_Disk.Name=\\\"sda\\\"\"} "
                 "3"));
}

TEST_F(ExporterTest, NullsAreCountedAndGiveNoSeries) {
    AddDisks(DeclarationXml("Free", "uint64"), InstanceXml("TEST_Disk", "sda", PropertyXml("Free", "uint64", "")));
    Start("modules: {disks: [{class: TEST_Disk, metrics: [Free]}]}");
    const auto lines = Probe("disks", "disks");
    EXPECT_THAT(lines, Contains("cim_null_values 1"));
    EXPECT_THAT(lines, Not(Contains(StartsWith("test_disk_free"))));
}

TEST_F(ExporterTest, ValuesThatCannotBeReadAreCountedByCauseAndNamed) {
    AddDisks(DeclarationXml("Free", "uint64"), InstanceXml("TEST_Disk", "sda", PropertyXml("Free", "uint64", "much")));
    Start("modules: {disks: [{class: TEST_Disk, metrics: [Free]}]}");
    const auto lines = Probe("disks", "disks");
    EXPECT_THAT(lines, IsSupersetOf({"cim_up 1", "cim_errors{kind=\"incident\"} 1"}));
    EXPECT_THAT(lines, Contains(StartsWith("cim_incidents{cause=\"")));
    EXPECT_THAT(lines, Contains(AllOf(StartsWith("cim_problem_info{kind=\"incident\",class=\"TEST_Disk\",reason=\""),
                                      HasSubstr("Free"))));
}

TEST_F(ExporterTest, ClassesAndPropertiesThatAreNotThereAreCountedAndNamed) {
    fleet_.Add("rack1", {"left"});
    Start("modules:\n  m:\n    - {class: TEST_Fan, metrics: [Speed, Noise, Name]}\n    - {class: TEST_Pump, metrics: "
          "[Speed]}\n    - {class: TEST_Valve, optional: true, metrics: [Speed]}\n");
    const auto lines = Probe("rack1", "m");
    EXPECT_THAT(lines,
                IsSupersetOf({"cim_up 1", "cim_errors{kind=\"class\"} 1", "cim_errors{kind=\"property\"} 2",
                              "cim_class_up{class=\"TEST_Pump\"} 0", "cim_class_up{class=\"TEST_Valve\"} 0",
                              "cim_problem_info{kind=\"property\",class=\"TEST_Fan\",reason=\"there is no property "
                              "Noise\"} 1",
                              "test_fan_speed{name=\"left\"} 3"}));
    EXPECT_THAT(lines, Contains(StartsWith("cim_problem_info{kind=\"class\",class=\"TEST_Pump\",reason=\"")));
    EXPECT_THAT(lines, Not(Contains(HasSubstr("class=\"TEST_Valve\",reason"))));
}

TEST_F(ExporterTest, TwoNumbersWithTheSameLabelsAreOneAndAProblem) {
    AddDisks(
        DeclarationXml("Free", "uint64") + DeclarationXml("Model", "string"),
        InstanceXml("TEST_Disk", "sda", PropertyXml("Free", "uint64", "3") + PropertyXml("Model", "string", "M")) +
            InstanceXml("TEST_Disk", "sdb", PropertyXml("Free", "uint64", "4") + PropertyXml("Model", "string", "M")));
    Start("modules: {disks: [{class: TEST_Disk, labels: [Model], metrics: [Free]}]}");
    EXPECT_THAT(Probe("disks", "disks"),
                IsSupersetOf({"test_disk_free{model=\"M\"} 3", "cim_errors{kind=\"doubled\"} 1",
                              "cim_problem_info{kind=\"doubled\",class=\"TEST_Disk\",reason=\"test_disk_free has two "
                              "numbers with the same labels\"} 1"}));
}

TEST_F(ExporterTest, SeriesBeyondTheLimitAreCounted) {
    fleet_.Add("rack1", {"a", "b", "c", "d"});
    settings_.limits.series = 3;
    Start(kFans);
    EXPECT_THAT(Probe("rack1", "fans"),
                IsSupersetOf({"cim_series 3", "cim_errors{kind=\"limit\"} 1",
                              "cim_problem_info{kind=\"limit\",class=\"TEST_Fan\",reason=\"the limit of series is "
                              "reached\"} 1"}));
}

TEST_F(ExporterTest, ClassesBeyondTheLimitOfBytesAreNotAskedFor) {
    support::CimServer& server = fleet_.Add("rack1", {"a"});
    settings_.limits.bytes = 100;
    Start("modules: {m: [{class: TEST_Fan, metrics: [Speed]}, {class: TEST_Pump, metrics: [Speed]}]}");
    EXPECT_THAT(Probe("rack1", "m"), IsSupersetOf({"cim_errors{kind=\"limit\"} 1", "test_fan_speed{name=\"a\"} 3"}));
    for (const auto& call : server.Calls()) {
        EXPECT_THAT(call.http.body, Not(HasSubstr("TEST_Pump")));
    }
}

TEST_F(ExporterTest, AServerThatIsNotThereIsDownAndTheReasonIsALabel) {
    fleet_.AddDead("rack9");
    Start(kFans);
    const auto answer = Ask("/probe?target=rack9&module=fans");
    EXPECT_EQ(answer.status, 200);
    EXPECT_THAT(Lines(answer.body), Contains(AllOf(StartsWith("cim_up{reason=\""), HasSubstr("nothing listens"))));
    EXPECT_THAT(Lines(answer.body), Not(Contains("cim_up 1")));
}

TEST_F(ExporterTest, AReasonIsBounded) {
    const std::string code(5000, 'x');
    support::CimServer& server = fleet_.Add("rack1", {});
    server.Fail("GetClass", "TEST_Fan", 1, code);
    Start(kFans);
    const auto answer = Ask("/probe?target=rack1&module=fans");
    EXPECT_THAT(answer.body, HasSubstr("xxx"));
    EXPECT_LT(answer.body.size(), 4000U);
}

TEST_F(ExporterTest, ALoginThatIsRefusedIsDown) {
    support::CimServer& server = fleet_.Add("other", {"a"});
    server.RequireUser("reader", "secret");
    Start(kFans);
    EXPECT_THAT(Probe("other", "fans"), Contains(StartsWith("cim_up{reason=\"")));
}

TEST_F(ExporterTest, AServerThatFallsSilentIsDownWhenPrometheusWouldGiveUp) {
    fleet_.AddFaulty("slow", support::faults::StalledAt(10));
    settings_.limits.time = std::chrono::hours(1); // which nobody would wait for
    Start(kFans);
    EXPECT_THAT(Probe("slow", "fans", {{"X-Prometheus-Scrape-Timeout-Seconds", "1"}}),
                Contains(AllOf(StartsWith("cim_up{reason=\""), testing::EndsWith("\"} 0"))));
}

TEST_F(ExporterTest, OnlyNamedConnectionsAreRead) {
    support::CimServer& server = fleet_.Add("rack1", {"a"});
    Start(kFans);
    const auto answer = Ask("/probe?target=" + server.Address() + "&module=fans");
    EXPECT_EQ(answer.status, 404);
    EXPECT_THAT(answer.body, HasSubstr("there is no connection '" + server.Address() + "'"));
    EXPECT_EQ(server.ConnectionCount(), 0U);
}

TEST_F(ExporterTest, AHostThatIsAllowedGetsNobodysPassword) {
    support::CimServer server(support::SecondLoopbackAddress());
    AnswerWithFans(server, {"a"});
    const std::string target = server.Address() + ':' + std::to_string(server.Listen(0));
    fleet_.AddConnection("default", 1, R"(,"user":"reader","password":"secret")");
    options_.user = "operator";
    options_.passwordVariable = "hidden";
    settings_.allowedHosts = {"127.*"};
    Start(kFans);
    EXPECT_THAT(Probe(target, "fans"), IsSupersetOf({"cim_up 1", "test_fan_speed{name=\"a\"} 3"}));
    for (const auto& call : server.Calls()) {
        EXPECT_FALSE(call.http.HasHeader("Authorization"));
    }
    EXPECT_EQ(Ask("/probe?target=server.example&module=fans").status, 404);
}

TEST_F(ExporterTest, ConnectionsAndDefinitionsAreKept) {
    support::CimServer& server = fleet_.Add("rack1", {"a"});
    Start(kFans);
    for (int i = 0; i < 3; ++i) {
        EXPECT_THAT(Probe("rack1", "fans"), Contains("test_fan_speed{name=\"a\"} 3"));
    }
    EXPECT_EQ(server.ConnectionCount(), 1U);
    EXPECT_EQ(CountOf(server.Calls(), "GetClass"), 1U);
    EXPECT_EQ(CountOf(server.Calls(), "EnumerateInstances"), 3U);
}

TEST_F(ExporterTest, AConnectionThatNobodyAsksForIsLeft) {
    support::CimServer& server = fleet_.Add("rack1", {"a"});
    fleet_.Add("rack2", {"a"});
    settings_.limits.idleLife = std::chrono::seconds(0);
    Start(kFans);
    Probe("rack1", "fans");
    Probe("rack2", "fans");
    EXPECT_THAT(Lines(Ask("/metrics").body), Contains("cim_exporter_targets 1"));
    EXPECT_THAT(Probe("rack1", "fans"), Contains("test_fan_speed{name=\"a\"} 3"));
    EXPECT_EQ(server.ConnectionCount(), 2U);
}

TEST_F(ExporterTest, AClassEndsAtTheLimitOfBytesWhereTheServerSendsPortions) {
    support::CimServer& server = fleet_.Add("rack1", {});
    std::string fans;
    for (int i = 0; i < 300; ++i) { // more than are held
        fans += InstanceXml("TEST_Fan", "fan" + std::to_string(i), PropertyXml("Speed", "uint32", "3"));
    }
    server.AnswerPortion("OpenEnumerateInstances", "TEST_Fan", fans, "more");
    settings_.limits.bytes = 1000;
    Start(kFans);
    EXPECT_THAT(Probe("rack1", "fans"),
                IsSupersetOf({"cim_up 1", "cim_errors{kind=\"limit\"} 1", "cim_class_instances{class=\"TEST_Fan\"} 300",
                              "cim_problem_info{kind=\"limit\",class=\"TEST_Fan\",reason=\"reading ended after 300 "
                              "instances: the limit of bytes is reached\"} 1"}));
    EXPECT_EQ(CountOf(server.Calls(), "PullInstancesWithPath"), 0U);
}

TEST_F(ExporterTest, DefinitionsAreReadAgainAfterTheirTime) {
    support::CimServer& server = fleet_.Add("rack1", {"a"});
    settings_.limits.definitionsLife = std::chrono::seconds(0);
    Start(kFans);
    Probe("rack1", "fans");
    Probe("rack1", "fans");
    EXPECT_EQ(CountOf(server.Calls(), "GetClass"), 2U);
}

TEST_F(ExporterTest, AServerThatComesBackIsReadAgain) {
    support::CimServer& server = fleet_.Add("rack1", {"a"});
    Start(kFans);
    const std::uint16_t port = server.Listen(0);
    fleet_.AddConnection("rack1", port);
    EXPECT_THAT(Probe("rack1", "fans"), Contains("cim_up 1"));
    server.Stop();
    EXPECT_THAT(Probe("rack1", "fans"), Contains(StartsWith("cim_up{reason=\"")));
    support::CimServer again;
    AnswerWithFans(again, {"a"});
    again.Listen(port);
    EXPECT_THAT(Probe("rack1", "fans"), Contains("test_fan_speed{name=\"a\"} 3"));
}

TEST_F(ExporterTest, AConnectionThatIsChangedLeadsElsewhereAndOneThatIsRemovedNowhere) {
    fleet_.Add("rack1", {"a"});
    Start(kFans);
    Probe("rack1", "fans");
    fleet_.Add("rack1", {"b"}); // another server of the same name
    EXPECT_THAT(Probe("rack1", "fans"), Contains("test_fan_speed{name=\"b\"} 3"));
    fleet_.RemoveConnection("rack1");
    EXPECT_EQ(Ask("/probe?target=rack1&module=fans").status, 404);
}

/// A server that keeps back its instances until it is told.
class HeldServer {
  public:
    support::ScriptedServer::Script Script() {
        return [this](support::Connection& client) {
            while (const auto request = client.ReadRequest()) {
                if (MethodIn(request->body) == "EnumerateInstances") {
                    std::unique_lock<std::mutex> lock(mutex_);
                    ++enumerations_;
                    changed_.wait_for(lock, std::chrono::seconds(60), [this] { return isOpen_; });
                }
                if (!client.Write(FanAnswer(request->body))) {
                    return;
                }
            }
        };
    }

    void Open() {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            isOpen_ = true;
        }
        changed_.notify_all();
    }

    std::size_t Enumerations() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return enumerations_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isOpen_ = false;
    std::size_t enumerations_ = 0;
};

/// Asks for the exporter's own numbers until there is this line; false when it does not come.
bool AwaitOwn(const std::function<std::string()>& page, const std::string& line) {
    for (int i = 0; i < 3000; ++i) {
        if (page().find('\n' + line + '\n') != std::string::npos) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

TEST_F(ExporterTest, ScrapesAtTheSameTimeShareOneReading) {
    HeldServer held;
    fleet_.AddScripted("rack1", held.Script());
    Start(kFans);
    std::vector<std::future<std::vector<std::string>>> scrapes;
    for (int i = 0; i < 3; ++i) {
        scrapes.push_back(std::async(std::launch::async, [] { return Probe("rack1", "fans"); }));
    }
    EXPECT_TRUE(AwaitOwn([] { return Ask("/metrics").body; }, "cim_exporter_scrapes_waiting 3"));
    EXPECT_THAT(Lines(Ask("/metrics").body), Contains("cim_exporter_targets_busy 1"));
    held.Open();
    for (auto& scrape : scrapes) {
        EXPECT_THAT(scrape.get(), Contains("test_fan_speed{name=\"faulty\"} 3"));
    }
    EXPECT_EQ(held.Enumerations(), 1U);
    EXPECT_THAT(Lines(Ask("/metrics").body), IsSupersetOf({"cim_exporter_scrapes_total{outcome=\"shared\"} 2",
                                                           "cim_exporter_scrapes_total{outcome=\"read\"} 1"}));
}

TEST_F(ExporterTest, AServerThatIsStillBeingReadForAnotherModuleIsDownForThisOne) {
    HeldServer held;
    fleet_.AddScripted("rack1", held.Script());
    Start("modules: {fans: [{class: TEST_Fan, metrics: [Speed]}], more: [{class: TEST_Fan, metrics: [Speed]}]}");
    auto first = std::async(std::launch::async, [] { return Probe("rack1", "fans"); });
    EXPECT_TRUE(AwaitOwn([] { return Ask("/metrics").body; }, "cim_exporter_scrapes_waiting 1"));
    EXPECT_THAT(Probe("rack1", "more", {{"X-Prometheus-Scrape-Timeout-Seconds", "0.2"}}),
                Contains("cim_up{reason=\"an earlier scrape of the server has not ended\"} 0"));
    held.Open();
    EXPECT_THAT(first.get(), Contains("cim_up 1"));
}

TEST_F(ExporterTest, ServersBeyondTheLimitWaitForTheirTurn) {
    HeldServer held;
    fleet_.AddScripted("rack1", held.Script());
    fleet_.Add("rack2", {"a"});
    settings_.limits.targets = 1;
    Start(kFans);
    auto first = std::async(std::launch::async, [] { return Probe("rack1", "fans"); });
    EXPECT_TRUE(AwaitOwn([] { return Ask("/metrics").body; }, "cim_exporter_scrapes_waiting 1"));
    EXPECT_THAT(Probe("rack2", "fans", {{"X-Prometheus-Scrape-Timeout-Seconds", "0.8"}}),
                Contains("cim_up{reason=\"too many servers are being read at once\"} 0"));
    auto second = std::async(std::launch::async, [] { return Probe("rack2", "fans"); });
    held.Open();
    EXPECT_THAT(first.get(), Contains("cim_up 1"));
    EXPECT_THAT(second.get(), Contains("test_fan_speed{name=\"a\"} 3"));
}

TEST_F(ExporterTest, SaysWhatIsMissingInARequest) {
    fleet_.Add("rack1", {"a"});
    Start(kFans);
    EXPECT_EQ(Ask("/probe?target=rack1").status, 400);
    EXPECT_EQ(Ask("/probe?module=fans").status, 400);
    const auto answer = Ask("/probe?target=rack1&module=pumps");
    EXPECT_EQ(answer.status, 400);
    EXPECT_EQ(answer.body, "there is no module 'pumps'; there are fans\n");
    EXPECT_EQ(Ask("/elsewhere").status, 404);
    EXPECT_THAT(Lines(Ask("/metrics").body), Contains("cim_exporter_scrapes_total{outcome=\"refused\"} 3"));
    EXPECT_THAT(Ask("/").body, HasSubstr("/probe?target=NAME&module=NAME"));
    EXPECT_EQ(Ask("/-/healthy").status, 200);
}

TEST_F(ExporterTest, ListsAllConnectionsForDiscovery) {
    fleet_.AddConnection("rack2", 1, R"(,"user":"reader","password":"secret")");
    fleet_.AddConnection("rack1", 1);
    Start(kFans);
    const auto answer = Ask("/targets");
    EXPECT_EQ(answer.get_header_value("Content-Type"), "application/json");
    EXPECT_EQ(answer.body, "[{\"targets\":[\"rack1\",\"rack2\"]}]\n");
}

TEST_F(ExporterTest, ConnectionsThatCannotBeReadAreAnErrorOfTheExporter) {
    fleet_.Add("rack1", {"a"});
    Start(kFans);
    fleet_.WriteFile("cimhttp/connections.json", "{");
    const auto answer = Ask("/probe?target=rack1&module=fans");
    EXPECT_EQ(answer.status, 500);
    EXPECT_THAT(answer.body, HasSubstr("connections.json"));
}

TEST_F(ExporterTest, TellsItsVersionAndWhatItTakes) {
    Start(kFans);
    const auto lines = Lines(Ask("/metrics").body);
    EXPECT_THAT(lines, Contains("cim_exporter_build_info{version=\"1.2.3\"} 1"));
    for (const char* const name :
         {"process_cpu_seconds_total ", "process_resident_memory_bytes ", "process_open_fds "}) {
        EXPECT_THAT(lines, Contains(AllOf(StartsWith(name), Not(testing::EndsWith(" 0")))));
    }
}

} // namespace
