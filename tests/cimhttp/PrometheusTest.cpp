// What Prometheus' own programs make of the exporter, and the program that serves it.

#include "CimXml.h"
#include "ExporterFixture.h"
#include "ProgramRun.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"
#include "support/SkipTest.h"
#include "support/TerminalProgram.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <csignal>
#include <regex>
#include <set>
#include <thread>

using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// Not the usual one, on which the package's own service may listen at all addresses.
constexpr int kPrometheusPort = 29090;

std::string Needed(const std::string& program) {
    std::string path = support::FindProgram(program);
    if (path.empty()) {
        support::SkipTest("there is no " + program);
    }
    return path;
}

class PrometheusTest : public ExporterFixture {
  protected:
    /// A demo server with the name demo.
    void StartServer() {
        demo::DemoServerOptions options;
        options.address = support::LoopbackAddress();
        demo_.emplace(options);
        fleet_.AddConnection("demo", 5988);
    }

    /// What promtool says of a page; empty when it has nothing to say.
    std::string Complaints(const std::string& page) const {
        const std::string file = fleet_.WriteFile("page.txt", page);
        const auto run =
            support::RunProgram("/bin/sh", {"-c", Needed("promtool") + " check metrics < " + file + " 2>&1"});
        return run.status == 0 ? run.output : "status " + std::to_string(run.status) + ": " + run.output;
    }

    std::optional<demo::DemoServer> demo_;
};

TEST_F(PrometheusTest, PromtoolHasNothingToSayAboutAnyModuleNorAboutTheExporter) {
    StartServer();
    Start("");
    for (const auto& [name, module] : settings_.modules) {
        const auto answer = Ask("/probe?target=demo&module=" + name);
        EXPECT_THAT(Lines(answer.body), Contains("cim_up 1")) << name;
        for (const char* const kind : {"class", "property", "value", "doubled", "limit", "incident"}) {
            EXPECT_THAT(Lines(answer.body), Contains("cim_errors{kind=\"" + std::string(kind) + "\"} 0")) << name;
        }
        EXPECT_EQ(Complaints(answer.body), "") << name;
    }
    EXPECT_EQ(Complaints(Ask("/metrics").body), "");
}

TEST_F(PrometheusTest, PromtoolHasNothingToSayAboutAServerThatIsDown) {
    fleet_.AddDead("rack9");
    Start("");
    EXPECT_EQ(Complaints(Ask("/probe?target=rack9&module=storage").body), "");
}

TEST_F(PrometheusTest, HostileTextsStayTextsOfLabels) {
    const std::vector<std::string> names{"\"} 1\nmade_up 7\n",     "back\\slash",
                                         "tab\tbell\x07",          "\xc3\xa4\xe2\x82\xac",
                                         std::string(100000, 'x'), "{}=,#"};
    support::CimServer& server = fleet_.Add("rack1", {});
    std::string instances;
    for (const std::string& name : names) {
        std::string escaped;
        for (const char c : name) {
            escaped += c == '<'      ? "&lt;"
                       : c == '"'    ? "&quot;"
                       : c == '\n'   ? "&#10;"
                       : c == '\x07' ? "?"
                                     : std::string(1, c);
        }
        instances += InstanceXml("TEST_Fan", escaped, PropertyXml("Speed", "uint32", "3"));
    }
    server.Answer("EnumerateInstances", "TEST_Fan", instances);
    Start("modules: {fans: [{class: TEST_Fan, metrics: [Speed]}]}");
    const auto answer = Ask("/probe?target=rack1&module=fans");
    EXPECT_THAT(Lines(answer.body), Contains("cim_series " + std::to_string(names.size())));
    EXPECT_THAT(Lines(answer.body), testing::Not(Contains(StartsWith("made_up"))));
    EXPECT_LT(answer.body.size(), 5000U);
    EXPECT_EQ(Complaints(answer.body), "");
}

/// The value of a query's only result; empty when there is none yet.
std::string ValueOf(const std::string& address, const std::string& query) {
    httplib::Client client(address, kPrometheusPort);
    const auto answer = client.Get("/api/v1/query", httplib::Params{{"query", query}}, httplib::Headers());
    if (!answer || answer->status != 200) {
        return "";
    }
    const auto result = support::ParsedJson(answer->body).at("data").at("result");
    return result.empty() ? "" : result.at(0).at("value").at(1).get<std::string>();
}

std::string Awaited(const std::string& address, const std::string& query) {
    for (int i = 0; i < 600; ++i) {
        const std::string value = ValueOf(address, query);
        if (!value.empty()) {
            return value;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return "";
}

TEST_F(PrometheusTest, ARealPrometheusFindsTheFileSystemsOfTheDemoServer) {
    const std::string prometheus = Needed("prometheus");
    StartServer();
    const std::string address = support::LoopbackAddress();
    support::TerminalProgram exporter(CIMHTTP_PROGRAM, {"exporter", "--listen", address + ":9989"},
                                      {fleet_.Environment()});
    ASSERT_TRUE(exporter.AwaitText("the exporter listens on http://" + address + ":9989")) << exporter.Screen();
    const std::string configuration = fleet_.WriteFile("prometheus.yml", "scrape_configs:\n"
                                                                         "  - job_name: cim\n"
                                                                         "    scrape_interval: 1s\n"
                                                                         "    scrape_timeout: 1s\n"
                                                                         "    metrics_path: /probe\n"
                                                                         "    params: {module: [storage]}\n"
                                                                         "    static_configs: [{targets: [demo]}]\n"
                                                                         "    relabel_configs:\n"
                                                                         "      - source_labels: [__address__]\n"
                                                                         "        target_label: __param_target\n"
                                                                         "      - source_labels: [__param_target]\n"
                                                                         "        target_label: instance\n"
                                                                         "      - target_label: __address__\n"
                                                                         "        replacement: " +
                                                                             address + ":9989\n");
    const support::TerminalProgram server(
        prometheus, {"--config.file=" + configuration, "--storage.tsdb.path=" + fleet_.Path("data"),
                     "--web.listen-address=" + address + ":" + std::to_string(kPrometheusPort), "--log.level=error"});
    EXPECT_EQ(Awaited(address, "cim_up{instance=\"demo\"}"), "1");
    EXPECT_EQ(Awaited(address, "cim_class_up{class=\"CIM_FileSystem\"}"), "1");
    const std::string size = Awaited(address, "cim_file_system_file_system_size_bytes{name=\"/\"}");
    const auto own = RunCimhttp({"--host", address, "instances", "CIM_FileSystem", "--where", "Name=/", "-o", "json"});
    const auto properties = support::ParsedJson(own.output).at(0).at("properties");
    EXPECT_EQ(size, std::to_string(properties.at("FileSystemSize").at("value").get<std::uint64_t>()));
}

const std::string& Examples() {
    static const std::string folder = CIMHTTP_EXAMPLES;
    return folder;
}

TEST(PrometheusExamplesTest, AreTakenByPrometheus) {
    const std::string promtool = Needed("promtool");
    for (const std::string& words :
         {"check config " + Examples() + "/prometheus.yml", "check rules " + Examples() + "/alerts.yml"}) {
        const auto run = support::RunProgram("/bin/sh", {"-c", promtool + ' ' + words + " 2>&1"});
        EXPECT_EQ(run.status, 0) << run.output;
    }
}

TEST(PrometheusExamplesTest, TheDashboardIsWhatItsScriptWrites) {
    const auto run = support::RunProgram(Examples() + "/make-dashboard", {});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, support::ReadFile(Examples() + "/dashboard.json"));
}

std::set<std::string> MetricsIn(const std::string& text) {
    static const std::regex name("\\b(cim|process)_[a-z_]+");
    std::set<std::string> names;
    for (std::sregex_iterator match(text.begin(), text.end(), name); match != std::sregex_iterator(); ++match) {
        names.insert(match->str());
    }
    return names;
}

TEST_F(PrometheusTest, TheExamplesAskForMetricsThatThereAre) {
    StartServer();
    fleet_.AddConnection("demo", 5989, R"(,"tls":true)");
    Start("");
    std::string pages = Ask("/metrics").body;
    for (const auto& [name, module] : settings_.modules) {
        pages += Ask("/probe?target=demo&module=" + name).body;
    }
    pages += "cim_problem_info cim_up "; // where there are problems
    const auto known = MetricsIn(pages);
    for (const char* const file : {"/alerts.yml", "/dashboard.json"}) {
        const auto asked = MetricsIn(support::ReadFile(Examples() + file));
        EXPECT_GT(asked.size(), 3U);
        EXPECT_THAT(known, testing::IsSupersetOf(asked)) << file;
    }
}

TEST_F(PrometheusTest, AModuleThatIsSuggestedReadsTheClass) {
    StartServer();
    for (const char* const name : {"DEMO_FileSystem", "CIM_NumericSensor", "DEMO_AllTypes", "CIM_NetworkPort"}) {
        const auto run = RunCimhttp({"--host", support::LoopbackAddress(), "exporter", "--suggest", name});
        ASSERT_EQ(run.status, 0) << run.errors;
        server_.reset();
        Start(run.output);
        const auto answer = Ask("/probe?target=demo&module=" + settings_.modules.begin()->first);
        EXPECT_THAT(Lines(answer.body), testing::IsSupersetOf({"cim_up 1", "cim_errors{kind=\"property\"} 0",
                                                               "cim_errors{kind=\"class\"} 0"}))
            << run.output << answer.body;
        EXPECT_EQ(Complaints(answer.body), "");
    }
}

TEST_F(PrometheusTest, ASuggestionNamesTheMetrics) {
    StartServer();
    const auto run = RunCimhttp({"--host", support::LoopbackAddress(), "exporter", "--suggest", "DEMO_FileSystem"});
    EXPECT_THAT(run.output, HasSubstr("labels: [Name]\n"));
    EXPECT_THAT(run.output, HasSubstr("- AvailableSpace  # demo_file_system_available_space_bytes\n"));
    EXPECT_THAT(run.output, HasSubstr("- property: HealthState\n          states: [Unknown, OK, "));
    EXPECT_THAT(run.output, HasSubstr("# texts, which can be labels: "));
    const auto none = RunCimhttp({"--host", support::LoopbackAddress(), "exporter", "--suggest", "DEMO_Nothing"});
    EXPECT_EQ(none.status, 5);
}

TEST_F(PrometheusTest, TheProgramSaysWhatItCannotServe) {
    const auto errorOf = [this](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "exporter");
        const auto run = fleet_.Run(arguments);
        EXPECT_EQ(run.status, 2);
        return run.errors;
    };
    EXPECT_THAT(errorOf({"--listen", "nowhere"}), HasSubstr("'nowhere' is no place to listen on"));
    EXPECT_THAT(errorOf({"--listen", "192.0.2.1:9989"}), HasSubstr("cannot listen on 192.0.2.1:9989: "));
    EXPECT_THAT(errorOf({"--modules", fleet_.WriteFile("m.yml", "modules: 1\n")}), HasSubstr("m.yml, line 1: "));
    EXPECT_THAT(errorOf({"--web-config", fleet_.WriteFile("w.yml", "x: 1\n")}), HasSubstr("w.yml, line 1: 'x'"));
    EXPECT_THAT(errorOf({"--host", "server.example"}), HasSubstr("Prometheus says which server is read"));
    EXPECT_THAT(errorOf({"--trace", fleet_.Path("trace")}), HasSubstr("leave out --trace"));
}

TEST_F(PrometheusTest, TheProgramEndsAtASignal) {
    const std::string address = support::LoopbackAddress();
    support::TerminalProgram exporter(CIMHTTP_PROGRAM, {"exporter", "--listen", address + ":9989"},
                                      {fleet_.Environment()});
    ASSERT_TRUE(exporter.AwaitText(":9989")) << exporter.Screen();
    EXPECT_EQ(Ask("/-/healthy").status, 200);
    exporter.Type("\x03");
    EXPECT_EQ(exporter.Wait(), -SIGINT);
}

} // namespace
