// `--wide`: CSV with an instance a row, which other programs read.

#include "CimXml.h"
#include "ProgramRun.h"
#include "server/DemoServer.h"
#include "support/CimServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using nlohmann::json;
using testing::HasSubstr;

namespace {

constexpr std::uint16_t kHttpPort = 5988;

/// TEST_Disk with Size and Label, and its subclass TEST_FastDisk with Speed and another spelling of Label.
class WideCsvTest : public testing::Test {
  protected:
    WideCsvTest() {
        server_.Listen(kHttpPort);
        const std::string size = DeclarationXml("Size", "uint64");
        server_.Answer("GetClass", "TEST_Disk", ClassXml("TEST_Disk", "", size + DeclarationXml("Label", "string")));
        server_.Answer("GetClass", "TEST_FastDisk",
                       ClassXml("TEST_FastDisk", "TEST_Disk",
                                size + DeclarationXml("LABEL", "string") + DeclarationXml("Speed", "uint32")));
        server_.Answer(
            "EnumerateInstances", "TEST_Disk",
            InstanceXml("TEST_Disk", "sda",
                        PropertyXml("Size", "uint64", "5") +
                            "<PROPERTY NAME=\"Label\" TYPE=\"string\"><VALUE></VALUE></PROPERTY>") +
                InstanceXml("TEST_FastDisk", "sdb",
                            PropertyXml("LABEL", "string", "a,\"b\"\nc") + PropertyXml("Speed", "uint32", "9")));
        server_.Answer("GetInstance", "", BareInstanceXml("TEST_Disk", "sda", PropertyXml("Size", "uint64", "5")));
    }

    ProgramRun Run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--host", server_.Address()});
        return RunCimhttp(arguments);
    }

    std::string Output(const std::vector<std::string>& arguments) const {
        const auto run = Run(arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        return run.output;
    }

    support::CimServer server_;
};

/// What python's reader of CSV takes a text for: a list of records.
json ReadByPython(const std::string& csv) {
    const support::TemporaryDirectory folder;
    const std::string file = folder.WriteFile("wide.csv", csv);
    const auto run = support::RunProgram(support::FindProgram("python3"),
                                         {"-c",
                                          "import csv, json, sys\n"
                                          "with open(sys.argv[1], newline='', encoding='utf-8') as f:\n"
                                          "    json.dump(list(csv.reader(f, strict=True)), sys.stdout)",
                                          file});
    EXPECT_EQ(run.status, 0) << run.errors;
    return run.status == 0 ? support::ParsedJson(run.output) : json();
}

} // namespace

TEST_F(WideCsvTest, HasARowForAnInstanceAndAColumnForAProperty) {
    EXPECT_EQ(Output({"instances", "TEST_Disk", "--wide"}),
              "Class,Path,Name,Label,Size\r\n"
              "TEST_Disk,\"TEST_Disk.Name=\"\"sda\"\"\",sda,\"\",5\r\n"
              "TEST_FastDisk,\"TEST_FastDisk.Name=\"\"sdb\"\"\",sdb,\"a,\"\"b\"\"\nc\",\r\n");
}

TEST_F(WideCsvTest, WithDeepHasAColumnForEachNameThatAnyClassHas) {
    EXPECT_EQ(Output({"instances", "TEST_Disk", "--wide", "--deep"}),
              "Class,Path,Name,Label,Size,Speed\r\n"
              "TEST_Disk,\"TEST_Disk.Name=\"\"sda\"\"\",sda,\"\",5,\r\n"
              "TEST_FastDisk,\"TEST_FastDisk.Name=\"\"sdb\"\"\",sdb,\"a,\"\"b\"\"\nc\",,9\r\n");
}

TEST_F(WideCsvTest, HasThePropertiesThatAreAskedForInTheirOrder) {
    EXPECT_EQ(Output({"instances", "TEST_Disk", "--wide", "--property", "label,size", "--where", "Name=sda"}),
              "Class,Path,Label,Size\r\nTEST_Disk,\"TEST_Disk.Name=\"\"sda\"\"\",\"\",5\r\n");
}

TEST_F(WideCsvTest, OfNoInstanceHasTheHeadings) {
    const auto run = Run({"instances", "TEST_Disk", "--wide", "--where", "Name=none"});
    EXPECT_EQ(run.output, "Class,Path,Name,Label,Size\r\n");
}

TEST_F(WideCsvTest, OfOneInstanceHasOneRow) {
    EXPECT_EQ(Output({"instance", "TEST_Disk.Name=\"sda\"", "--wide"}),
              "Class,Path,Name,Label,Size\r\nTEST_Disk,\"TEST_Disk.Name=\"\"sda\"\"\",sda,,5\r\n");
    EXPECT_THAT(Output({"instance", "root/interop:TEST_Disk.Name=\"sda\"", "--wide", "-o", "csv"}),
                HasSubstr("\r\nTEST_Disk,\"root/interop:TEST_Disk.Name=\"\"sda\"\"\","));
}

TEST_F(WideCsvTest, IsRefusedInAnotherForm) {
    for (const char* form : {"json", "table", "plain", "mof"}) {
        for (const std::string argument : {"TEST_Disk", "TEST_Disk.Name=\"sda\""}) {
            const auto run = Run({argument == "TEST_Disk" ? "instances" : "instance", argument, "--wide", "-o", form});
            EXPECT_EQ(run.status, 2);
            EXPECT_EQ(run.errors, "cimhttp: --wide is a form of csv, which need not be asked for\n");
        }
    }
    EXPECT_TRUE(server_.Calls().empty());
}

TEST(WideCsv, OfEveryTypeIsReadByPythonAsItWasSent) {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    const demo::DemoServer server(options);
    if (support::FindProgram("python3").empty()) {
        GTEST_SKIP() << "python3 is not installed";
    }
    const std::vector<std::string> command{"--host", support::LoopbackAddress(), "instances", "DEMO_AllTypes"};
    auto wide = command;
    wide.insert(wide.end(), {"--wide", "--raw"});
    auto usual = command;
    usual.insert(usual.end(), {"-o", "json"});
    const json records = ReadByPython(RunCimhttp(wide).output);
    const json instances = support::ParsedJson(RunCimhttp(usual).output);
    ASSERT_EQ(records.size(), instances.size() + 1);
    const json& headings = records.at(0);
    for (std::size_t row = 0; row < instances.size(); ++row) {
        const json& instance = instances.at(row);
        const json& record = records.at(row + 1);
        ASSERT_EQ(record.size(), headings.size());
        EXPECT_EQ(record.at(0), instance.at("class"));
        EXPECT_EQ(record.at(1), instance.at("path"));
        EXPECT_EQ(headings.size(), instance.at("properties").size() + 2);
        for (std::size_t i = 2; i < headings.size(); ++i) {
            const json& value = instance.at("properties").at(headings.at(i).get<std::string>()).at("value");
            const std::string text = record.at(i);
            SCOPED_TRACE(headings.at(i));
            if (value.is_array()) {
                EXPECT_EQ(support::ParsedJson(text), value);
            } else if (value.is_string()) {
                EXPECT_EQ(text, value.get<std::string>());
            } else if (value.is_null()) {
                EXPECT_EQ(text, "");
            } else {
                EXPECT_EQ(support::ParsedJson(text), value);
            }
        }
    }
}

TEST(WideCsv, ShowsTextsForPeopleUnlessRawIsAskedFor) {
    support::CimServer server;
    server.Listen(kHttpPort);
    const std::string mapped =
        QualifierXml("ValueMap", {"1", "2"}) + QualifierXml("Values", std::vector<std::string>{"on", "off"});
    const std::string none = QualifierXml("NullDisplay", "string", "none");
    server.Answer("GetClass", "TEST_Pump",
                  ClassXml("TEST_Pump", "",
                           DeclarationXml("State", "uint16", mapped) + ArrayDeclarationXml("Modes", "uint16", mapped) +
                               DeclarationXml("Level", "sint8", none)));
    server.Answer("EnumerateInstances", "TEST_Pump",
                  InstanceXml("TEST_Pump", "p",
                              PropertyXml("State", "uint16", "2") + ArrayXml("Modes", "uint16", {"1", "<null>"})));
    const auto row = [&](const std::vector<std::string>& options) {
        std::vector<std::string> arguments{"--host", server.Address(), "instances", "TEST_Pump", "--wide"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const std::string output = RunCimhttp(arguments).output;
        return output.substr(output.find("\r\n") + 2);
    };
    EXPECT_EQ(row({}), "TEST_Pump,\"TEST_Pump.Name=\"\"p\"\"\",p,,\"[\"\"on\"\",null]\",off\r\n");
    EXPECT_EQ(row({"--raw"}), "TEST_Pump,\"TEST_Pump.Name=\"\"p\"\"\",p,,\"[1,null]\",2\r\n");
}
