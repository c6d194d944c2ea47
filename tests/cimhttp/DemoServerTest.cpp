// The commands of cimhttp against a whole server with a rich schema.

#include "server/DemoServer.h"

#include "MofReader.h"
#include "ProgramRun.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"
#include "support/TerminalProgram.h"
#include "text/TerminalText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

using nlohmann::json;
using support::TerminalProgram;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

demo::DemoServerOptions DemoOptions() {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.volumes = 3;
    return options;
}

class DemoServerTest : public testing::Test {
  protected:
    static std::vector<std::string> Arguments(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--host", support::LoopbackAddress()});
        return arguments;
    }

    static ProgramRun Run(const std::vector<std::string>& arguments, const std::vector<std::string>& environment = {}) {
        return RunCimhttp(Arguments(arguments), environment);
    }

    static std::string Output(const std::vector<std::string>& arguments) {
        const auto run = Run(arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        return run.output;
    }

    static json Json(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--output", "json"});
        return support::ParsedJson(Output(arguments));
    }

    static std::string OnTerminal(const std::vector<std::string>& arguments, unsigned short columns,
                                  const std::vector<std::string>& environment = {}) {
        TerminalProgram program(CIMHTTP_PROGRAM, Arguments(arguments), environment, {columns, 24});
        EXPECT_EQ(program.Wait(), 0);
        return program.Screen();
    }

    demo::DemoServer server_{DemoOptions()};
};

/// The records of a CSV text (RFC 4180); a field that is empty and not quoted, which stands for null, is "<null>".
std::vector<std::vector<std::string>> ReadCsv(const std::string& text) {
    std::vector<std::vector<std::string>> records{{}};
    std::string field;
    bool wasQuoted = false;
    const auto endField = [&] {
        records.back().push_back(field.empty() && !wasQuoted ? "<null>" : field);
        field.clear();
        wasQuoted = false;
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"') {
            wasQuoted = true;
            for (++i; text.at(i) != '"' || (i + 1 < text.size() && text[i + 1] == '"'); ++i) {
                i += text[i] == '"' ? 1 : 0;
                field += text[i];
            }
        } else if (text[i] == ',') {
            endField();
        } else if (text.compare(i, 2, "\r\n") == 0) {
            endField();
            records.emplace_back();
            ++i;
        } else {
            field += text[i];
        }
    }
    EXPECT_TRUE(records.back().empty()) << "the last record has no end";
    records.pop_back();
    return records;
}

/// The lines of a screen without colours, each at most `columns` wide.
void ExpectFits(const std::string& screen, std::size_t columns) {
    std::istringstream lines(screen);
    for (std::string line; std::getline(lines, line) && line.rfind("cimhttp: ", 0) != 0;) {
        std::string shown;
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (line[i] == '\x1b') {
                i = line.find('m', i);
            } else if (line[i] != '\r') {
                shown += line[i];
            }
        }
        EXPECT_LE(cimhttp::DisplayWidth(shown), columns) << line;
    }
}

} // namespace

// --- Classes -----------------------------------------------------------------------------------------------------

TEST_F(DemoServerTest, ClassesAreAnArrayInJsonAndARecordEachInCsv) {
    EXPECT_EQ(Json({"classes", "demo_p*"}),
              json({"DEMO_ParentProcess", "DEMO_Point", "DEMO_Process", "DEMO_Processor"}));
    const auto records = ReadCsv(Output({"classes", "demo_po*", "-o", "csv"}));
    EXPECT_EQ(records, (std::vector<std::vector<std::string>>{{"Name"}, {"DEMO_Point"}}));
}

TEST_F(DemoServerTest, TheTreeIsDrawnInAsciiWhereTheLocaleHasNothingElse) {
    const auto run = RunCimhttp({"--host", support::LoopbackAddress(), "tree", "CIM_LogicalPort"}, {"LC_ALL=C"});
    EXPECT_EQ(run.output, "CIM_LogicalPort\n"
                          "`-- CIM_NetworkPort\n"
                          "    `-- DEMO_NetworkPort\n");
}

TEST_F(DemoServerTest, TheTreeIsDrawnBelowAClass) {
    EXPECT_EQ(Output({"tree", "cim_logicaldevice"}), "CIM_LogicalDevice\n"
                                                     "├── CIM_LogicalPort\n"
                                                     "│   └── CIM_NetworkPort\n"
                                                     "│       └── DEMO_NetworkPort\n"
                                                     "├── CIM_Processor\n"
                                                     "│   └── DEMO_Processor\n"
                                                     "├── CIM_Sensor\n"
                                                     "│   └── CIM_NumericSensor\n"
                                                     "│       └── DEMO_NumericSensor\n"
                                                     "└── CIM_StorageExtent\n"
                                                     "    ├── CIM_Memory\n"
                                                     "    │   └── DEMO_Memory\n"
                                                     "    └── CIM_StorageVolume\n"
                                                     "        └── DEMO_StorageVolume\n");
}

TEST_F(DemoServerTest, TheWholeTreeHasEveryClassOnce) {
    const std::string tree = Output({"tree"});
    const auto names = Json({"classes"});
    EXPECT_EQ(std::count(tree.begin(), tree.end(), '\n'), static_cast<std::ptrdiff_t>(names.size()));
    for (const std::string name : names) {
        EXPECT_THAT(
            tree, testing::AnyOf(StartsWith(name + '\n'), HasSubstr(' ' + name + '\n'), HasSubstr('\n' + name + '\n')));
    }
    EXPECT_EQ(ReadCsv(Output({"tree", "-o", "csv"})).size(), names.size() + 1);
}

TEST_F(DemoServerTest, TheTreeAsJsonIsNested) {
    EXPECT_EQ(Json({"tree", "CIM_Processor"}),
              support::ParsedJson(
                  R"([{"name": "CIM_Processor", "subclasses": [{"name": "DEMO_Processor", "subclasses": []}]}])"));
}

TEST_F(DemoServerTest, ATreeOfAnUnknownClassIsNotFound) {
    const auto run = Run({"tree", "CIM_Nothing"});
    EXPECT_EQ(run.status, 5);
    EXPECT_THAT(run.errors, HasSubstr("no class CIM_Nothing"));
}

TEST_F(DemoServerTest, TheMofOfAClassSaysWhatItsJsonSays) {
    for (const std::string name : {"DEMO_AllTypes", "DEMO_Process", "DEMO_HostedFileSystem", "DEMO_Point"}) {
        const json described = Json({"class", name});
        const MofClass whole = ReadMofClass(Output({"class", name, "--all"}));
        EXPECT_EQ(whole.name, name);
        EXPECT_EQ(whole.superclass, "");
        ASSERT_EQ(whole.properties.size(), described.at("properties").size()) << name;
        for (std::size_t i = 0; i < whole.properties.size(); ++i) {
            const json& property = described.at("properties").at(i);
            EXPECT_EQ(whole.properties[i].name, property.at("name"));
            EXPECT_EQ(whole.properties[i].isArray, property.at("array"));
            if (property.at("qualifiers").contains("Description")) {
                EXPECT_EQ(whole.properties[i].qualifiers.at("Description"),
                          property.at("qualifiers").at("Description"));
            }
        }
        EXPECT_EQ(whole.methods.size(), described.at("methods").size()) << name;
        const MofClass own = ReadMofClass(Output({"class", name}));
        EXPECT_EQ(own.superclass, described.at("superclass").is_null() ? "" : described.at("superclass"));
        const auto& all = described.at("properties");
        EXPECT_EQ(static_cast<std::ptrdiff_t>(own.properties.size()),
                  std::count_if(all.begin(), all.end(), [](const json& one) { return one.at("inherited") == false; }));
    }
}

TEST_F(DemoServerTest, AClassAsATableHasItsPropertiesAndTheirFirstSentences) {
    const std::string table = Output({"class", "DEMO_Processor", "--output", "table"});
    EXPECT_THAT(table, StartsWith("Property"));
    EXPECT_THAT(table, testing::ContainsRegex("DeviceID +string +key +CIM_LogicalDevice +"));
}

TEST_F(DemoServerTest, MethodsHaveTheirParameters) {
    EXPECT_EQ(Output({"methods", "DEMO_Processor", "-o", "plain"}),
              "uint32 RequestStateChange(uint16 RequestedState, datetime TimeoutPeriod)\nuint32 Reset()\n");
    const json methods = Json({"methods", "DEMO_Processor"});
    EXPECT_EQ(methods.at(0).at("parameters").at(0).at("name"), "RequestedState");
    EXPECT_EQ(methods.at(0).at("parameters").at(0).at("direction"), "in");
    EXPECT_THAT(Output({"methods", "DEMO_Processor", "-o", "mof"}),
                testing::AllOf(HasSubstr("datetime TimeoutPeriod);\n"), EndsWith("    uint32 Reset();\n")));
    EXPECT_EQ(Output({"methods", "DEMO_Point"}), "no methods\n");
}

TEST_F(DemoServerTest, QualifiersOfTheServerAndOfAClass) {
    EXPECT_THAT(Output({"qualifiers"}),
                testing::ContainsRegex("\nKey +boolean +false +property, reference +DisableOver"));
    EXPECT_THAT(Output({"qualifiers", "-o", "mof"}), HasSubstr("Qualifier Key : boolean = false,\n"
                                                               "    Scope(property, reference),\n"
                                                               "    Flavor(DisableOverride, ToSubclass);\n"));
    EXPECT_THAT(Output({"qualifiers", "--class", "DEMO_AllTypes"}), testing::ContainsRegex("\nInstanceID +Key +true"));
    EXPECT_EQ(Run({"qualifiers", "--class", "DEMO_AllTypes", "-o", "mof"}).status, 2);
}

// --- Instances ---------------------------------------------------------------------------------------------------

TEST_F(DemoServerTest, InstancesAsJsonHaveTypeValueAndText) {
    const json volumes = Json({"instances", "DEMO_StorageVolume", "--property", "BlockSize", "--property", "DeviceID"});
    ASSERT_EQ(volumes.size(), 3U);
    EXPECT_THAT(volumes.at(0).at("path").get<std::string>(), StartsWith("DEMO_StorageVolume."));
    EXPECT_EQ(volumes.at(0).at("properties").at("DeviceID"),
              support::ParsedJson(R"({"type": "string", "value": "volume-0000000", "text": "volume-0000000"})"));
    EXPECT_EQ(volumes.at(0).at("properties").at("BlockSize").at("type"), "uint64");
    EXPECT_TRUE(volumes.at(0).at("properties").at("BlockSize").at("value").is_number_unsigned());
}

TEST_F(DemoServerTest, InstancesAsJsonAreTheSameTwice) {
    EXPECT_EQ(Output({"instances", "DEMO_StorageVolume", "-o", "json"}),
              Output({"instances", "DEMO_StorageVolume", "-o", "json"}));
}

TEST_F(DemoServerTest, InstancesAsCsvHaveARecordForEachProperty) {
    const auto records = ReadCsv(Output({"instances", "DEMO_AllTypes", "-o", "csv"}));
    EXPECT_EQ(records.front(), (std::vector<std::string>{"Path", "Property", "Type", "Value", "Text"}));
    const std::vector<std::string> text{"DEMO_AllTypes.InstanceID=\"greatest\"", "AString", "string",
                                        "Größe: <5 & >3, \"10 €\", it's 😀\n\tnext line",
                                        "Größe: <5 & >3, \"10 €\", it's 😀\n\tnext line"};
    EXPECT_THAT(records, testing::Contains(text));
    for (const auto& record : records) {
        EXPECT_EQ(record.size(), 5U);
    }
}

TEST_F(DemoServerTest, WhereSelectsByRawValueByTextAndByPattern) {
    const auto names = [](const std::vector<std::string>& conditions) {
        std::vector<std::string> arguments{"instances", "DEMO_StorageVolume", "--property", "DeviceID"};
        for (const std::string& condition : conditions) {
            arguments.insert(arguments.end(), {"--where", condition});
        }
        return Json(arguments).size();
    };
    EXPECT_EQ(names({"DeviceID=volume-0000001"}), 1U);
    EXPECT_EQ(names({"deviceid=VOLUME-*"}), 3U);
    EXPECT_EQ(names({"DeviceID=volume-*", "DeviceID=*2"}), 1U);
    EXPECT_EQ(names({"OperationalStatus=2"}), 3U);
    EXPECT_EQ(names({"OperationalStatus=ok"}), 3U);
    EXPECT_EQ(names({"DeviceID=nothing"}), 0U);
    EXPECT_EQ(Run({"instances", "DEMO_StorageVolume", "--where", "DeviceID"}).status, 2);
    EXPECT_EQ(Run({"instances", "DEMO_StorageVolume", "--where", "Nothing=1"}).status, 2);
}

TEST_F(DemoServerTest, APathOfTheListNamesTheInstanceAlsoOfASubclass) {
    const json systems = Json({"instances", "CIM_ComputerSystem"});
    const std::string path = systems.at(0).at("path");
    EXPECT_THAT(path, StartsWith("DEMO_ComputerSystem."));
    const json found = Json({"instance", path});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.at(0).at("path"), path);
    EXPECT_EQ(found.at(0).at("properties").at("Name"), systems.at(0).at("properties").at("Name"));
}

TEST_F(DemoServerTest, AnInstanceIsAListAndNamesWhatHasNoValue) {
    const std::string list = Output({"instance", "DEMO_AllTypes.InstanceID=\"null\""});
    EXPECT_THAT(list, StartsWith("InstanceID   null\nWithDefault"));
    EXPECT_THAT(list, testing::ContainsRegex("\nWithout a value: ABoolean, AChar16, .*\n$"));
    EXPECT_THAT(Output({"instance", "DEMO_AllTypes.InstanceID=\"least\"", "-o", "table"}),
                testing::ContainsRegex("\nASint8 +sint8 +-128 +-128\n"));
    EXPECT_THAT(Output({"instance", "DEMO_AllTypes.InstanceID=\"least\"", "-o", "mof"}),
                testing::AllOf(StartsWith("instance of DEMO_AllTypes\n{\n    InstanceID = \"least\";\n"),
                               HasSubstr("    AReal32 = -3.4028235e+38;\n"), HasSubstr("    Booleans = {};\n")));
}

TEST_F(DemoServerTest, AnInstanceThatThereIsNotIsToldFromAPathThatIsNone) {
    EXPECT_EQ(Run({"instance", "DEMO_AllTypes.InstanceID=\"none\""}).status, 5);
    const auto run = Run({"instance", "DEMO_AllTypes.InstanceID="});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("is not an object path"));
}

TEST_F(DemoServerTest, DateTimesAreShownAsPeopleWriteThem) {
    EXPECT_THAT(Output({"instance", "DEMO_AllTypes.InstanceID=\"least\"", "-o", "table"}),
                testing::ContainsRegex("00010101000000.000000.000 +0001-01-01 00:00:00 .00:00\n"));
}

// --- Forms -------------------------------------------------------------------------------------------------------

TEST_F(DemoServerTest, AFormThatACommandDoesNotHaveIsWrongUsage) {
    const auto run = Run({"--output", "mof", "tree"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.errors, "cimhttp: tree does not write mof: it has plain, json or csv\n");
    EXPECT_EQ(Run({"collect", "-o", "csv", "file.xml"}).errors, "cimhttp: collect does not write csv: it has json\n");
    EXPECT_EQ(Run({"-o", "yaml", "tree"}).status, 2);
}

TEST_F(DemoServerTest, NothingIsWiderThanTheTerminal) {
    for (const unsigned short columns : std::initializer_list<unsigned short>{40, 200}) {
        ExpectFits(OnTerminal({"instances", "DEMO_Process"}, columns), columns);
        ExpectFits(OnTerminal({"instances", "DEMO_AllTypes"}, columns), columns);
        ExpectFits(OnTerminal({"class", "DEMO_Process", "-o", "table"}, columns), columns);
        ExpectFits(OnTerminal({"instance", "DEMO_AllTypes.InstanceID=\"greatest\""}, columns), columns);
    }
}

TEST_F(DemoServerTest, ANarrowTerminalSaysWhatIsMissing) {
    EXPECT_THAT(OnTerminal({"instances", "DEMO_StorageVolume"}, 40), HasSubstr(" left out; -o plain shows all"));
    EXPECT_THAT(OnTerminal({"instances", "DEMO_StorageVolume", "--property", "DeviceID"}, 40),
                Not(HasSubstr("left out")));
    EXPECT_THAT(
        OnTerminal({"instances", "DEMO_StorageVolume"}, 80),
        testing::ContainsRegex("\ncimhttp: left out: [A-Za-z]+[A-Za-z, ]+ and [0-9]+ more; -o plain shows all"));
    EXPECT_THAT(OnTerminal({"instances", "DEMO_ParentProcess"}, 80),
                HasSubstr("cimhttp: references lack keys that all rows share; -o plain shows all"));
    EXPECT_THAT(OnTerminal({"methods", "DEMO_Processor"}, 80), HasSubstr(" left out: From, Returns; -o csv"));
}

TEST_F(DemoServerTest, ColoursAreForTerminalsWithoutNoColor) {
    const std::vector<std::string> arguments{"instances", "DEMO_StorageVolume"};
    EXPECT_THAT(OnTerminal(arguments, 80), HasSubstr("\x1b[1mDeviceID\x1b[0m"));
    EXPECT_THAT(OnTerminal(arguments, 80, {"NO_COLOR=1"}), Not(HasSubstr("\x1b")));
    EXPECT_THAT(Output(arguments), Not(HasSubstr("\x1b")));
}

TEST_F(DemoServerTest, AReaderThatGoesAwayIsNoFailureToTalkAbout) {
    const std::string program = std::string(CIMHTTP_PROGRAM) + " --host " + support::LoopbackAddress();
    const auto run = support::RunProgram(
        "/bin/bash", {"-c", "set -o pipefail; " + program + " instances DEMO_Process -o mof | head -1"});
    EXPECT_EQ(run.output, "instance of DEMO_Process\n");
    EXPECT_EQ(run.errors, "");
    // The reader has gone before anything is written.
    const auto ignored = support::RunProgram("/bin/bash", {"-c", "trap '' PIPE; exec 3> >(true); wait $!; " + program +
                                                                     " instances DEMO_Process -o mof >&3"});
    EXPECT_EQ(ignored.status, 141);
    EXPECT_EQ(ignored.errors, "");
}

// --- Watching and looking at the server --------------------------------------------------------------------------

TEST_F(DemoServerTest, WatchShowsOldAndNewValues) {
    const auto run =
        Run({"watch", "DEMO_OperatingSystem", "--interval", "0.001", "--count", "1", "--property", "LocalDateTime"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.output, testing::MatchesRegex("[0-9:]+  1 instance\n[0-9:]+  ~ DEMO_OperatingSystem.[^\n]*\n"
                                                  " +LocalDateTime: 20[^\n]* → 20[^\n]*\n"));
}

TEST_F(DemoServerTest, WatchAsJsonIsALineForEachChange) {
    const std::string output = Output({"watch", "DEMO_OperatingSystem", "--interval", "0.001", "--count", "2",
                                       "--property", "LocalDateTime", "-o", "json"});
    std::istringstream lines(output);
    std::string present;
    std::getline(lines, present);
    EXPECT_EQ(support::ParsedJson(present).at("change"), "present");
    int round = 0;
    for (std::string line; std::getline(lines, line);) {
        const json change = support::ParsedJson(line);
        EXPECT_EQ(change.at("round"), ++round);
        EXPECT_EQ(change.at("change"), "changed");
        EXPECT_NE(change.at("properties").at("LocalDateTime").at("old"),
                  change.at("properties").at("LocalDateTime").at("new"));
    }
    EXPECT_EQ(round, 2);
}

TEST_F(DemoServerTest, WatchLooksOnlyAtInstancesThatMeetItsConditions) {
    const std::vector<std::string> watch{"watch", "DEMO_StorageVolume", "--count", "0", "--where"};
    auto one = watch;
    one.emplace_back("deviceid=*-0000001");
    EXPECT_THAT(Output(one), EndsWith("  1 instance\n"));
    auto unknown = watch;
    unknown.emplace_back("Colour=red");
    EXPECT_EQ(Run(unknown).status, 2);
}

TEST_F(DemoServerTest, WatchEndsInGoodOrderWhenInterrupted) {
    TerminalProgram program(CIMHTTP_PROGRAM, Arguments({"watch", "DEMO_StorageVolume", "--interval", "3600"}));
    ASSERT_TRUE(program.AwaitText("3 instances")) << program.Screen();
    program.Type("\x03");
    EXPECT_EQ(program.Wait(), 0);
}

TEST_F(DemoServerTest, WatchRefusesAnImpossibleInterval) {
    for (const char* interval : {"0", "-1", "nan", "86401"}) {
        EXPECT_EQ(Run({"watch", "DEMO_StorageVolume", "--interval", interval}).status, 2) << interval;
    }
}

TEST_F(DemoServerTest, InfoShowsTheCertificate) {
    const auto run = Run({"--tls", "info"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output,
                testing::ContainsRegex("\nTLS +TLSv1.3, [^\n]*\ncertificate +CN=[^\n]*\nissued by +itself\n"));
    EXPECT_THAT(run.output, testing::ContainsRegex("\nround trip +[0-9.]+ ms, names of all classes [0-9.]+ ms\n$"));
    const json info = Json({"info"});
    EXPECT_EQ(info.at("server"), "http://" + support::LoopbackAddress());
    EXPECT_EQ(info.at("classes"), Json({"classes"}).size());
}
