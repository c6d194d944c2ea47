// Paths go round: what cimhttp prints as a path, it takes as one.

#include "ProgramRun.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

using nlohmann::json;

namespace {

/// A server whose paths have keys of every type, references to references, quotes and other scripts in them.
class PathsTest : public testing::Test {
  protected:
    static json Json(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--host", support::LoopbackAddress(), "-o", "json"});
        const auto run = RunCimhttp(arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        return run.status == 0 ? support::ParsedJson(run.output) : json();
    }

    static std::vector<std::string> PathsOf(const std::string& cls) { return Json({"instances", cls, "--paths"}); }

  private:
    static demo::DemoServerOptions Options() {
        demo::DemoServerOptions options;
        options.address = support::LoopbackAddress();
        options.schemas.push_back({CIMHTTP_SECOND_SCHEMA, ReadFile(CIMHTTP_SECOND_SCHEMA)});
        return options;
    }

    demo::DemoServer server_{Options()};
};

} // namespace

TEST_F(PathsTest, EveryPathThatIsListedNamesItsInstance) {
    std::set<std::string> paths;
    for (const char* const cls : {"WH_Thing", "WH_Ticket", "WH_Shipment", "WH_Sample", "DEMO_HostedFileSystem"}) {
        const auto some = PathsOf(cls);
        EXPECT_FALSE(some.empty()) << cls;
        paths.insert(some.begin(), some.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(some.size(), 12)));
    }
    for (const std::string& path : paths) {
        EXPECT_EQ(Json({"instance", path}).at(0).at("path"), path);
    }
}

TEST_F(PathsTest, InstancesHaveThePathsThatAreListed) {
    std::vector<std::string> paths;
    for (const json& instance : Json({"instances", "WH_Thing"})) {
        paths.push_back(instance.at("path"));
    }
    EXPECT_THAT(PathsOf("WH_Thing"), testing::UnorderedElementsAreArray(paths));
}

TEST_F(PathsTest, AReferenceIsThePathOfWhatItPointsAt) {
    for (const json& shipment : Json({"instances", "WH_Shipment"})) {
        const json reference = shipment.at("properties").at("Antecedent").at("value");
        EXPECT_EQ(Json({"instance", reference}).at(0).at("path"), reference);
    }
}
