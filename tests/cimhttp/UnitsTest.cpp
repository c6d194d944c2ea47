// Numbers with their units, value maps and sensors, as the program shows them.

#include "CimXml.h"
#include "ProgramRun.h"
#include "support/CimServer.h"
#include "support/ParsedJson.h"
#include "support/TerminalProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using nlohmann::json;
using support::TerminalProgram;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr std::uint16_t kHttpPort = 5988;

std::string Number(const std::string& name, const std::string& value) { return PropertyXml(name, "sint32", value); }

/// A sensor's three properties that tell its unit, and a reading.
std::string SensorXml(const std::string& name, const std::string& base, const std::string& modifier,
                      const std::string& rate, const std::string& reading) {
    return InstanceXml("TEST_Sensor", name,
                       PropertyXml("BaseUnits", "uint16", base) + Number("UnitModifier", modifier) +
                           PropertyXml("RateUnits", "uint16", rate) + Number("CurrentReading", reading) +
                           Number("UpperThresholdCritical", "8000") + Number("Number", "2350"));
}

class UnitsTest : public testing::Test {
  protected:
    UnitsTest() {
        server_.Listen(kHttpPort);
        server_.Answer("GetClass", "TEST_Sensor",
                       ClassXml("TEST_Sensor", "",
                                DeclarationXml("BaseUnits", "uint16") + DeclarationXml("UnitModifier", "sint32") +
                                    DeclarationXml("RateUnits", "uint16") + DeclarationXml("CurrentReading", "sint32") +
                                    DeclarationXml("UpperThresholdCritical", "sint32") +
                                    DeclarationXml("Number", "sint32")));
        const std::string map = QualifierXml("ValueMap", {"0x0000", "0x8000.."}) +
                                QualifierXml("Values", std::vector<std::string>{"None", "Vendor"});
        server_.Answer(
            "GetClass", "TEST_Disk",
            ClassXml("TEST_Disk", "",
                     DeclarationXml("Size", "uint64", QualifierXml("Units", "string", "Bytes")) +
                         DeclarationXml("Clock", "uint32", QualifierXml("PUnit", "string", "hertz * 10^6")) +
                         DeclarationXml("State", "uint16", map) +
                         DeclarationXml("Flags", "uint8",
                                        QualifierXml("BitMap", {"0", "2"}) +
                                            QualifierXml("BitValues", std::vector<std::string>{"Read", "Run"})) +
                         DeclarationXml("Amount", "uint32", QualifierXml("ISPUnit", "string", "AmountUnit")) +
                         DeclarationXml("AmountUnit", "string")));
        const auto disk = [](const std::string& name, const std::string& size, const std::string& state) {
            return InstanceXml("TEST_Disk", name,
                               PropertyXml("Size", "uint64", size) + PropertyXml("Clock", "uint32", "2300") +
                                   PropertyXml("State", "uint16", state) + PropertyXml("Flags", "uint8", "5") +
                                   PropertyXml("Amount", "uint32", "1500") +
                                   PropertyXml("AmountUnit", "string", "watt"));
        };
        server_.Answer("EnumerateInstances", "TEST_Disk",
                       disk("a", "1500", "0") + disk("b", "17179869184", "17") +
                           disk("c", "18446744073709551615", "32769"));
    }

    std::string Output(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--host", server_.Address()});
        const auto run = RunCimhttp(arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        return run.output;
    }

    /// What the last request for instances asks of each.
    std::string RequestedProperties() const {
        const auto calls = server_.Calls();
        const auto& parameters = calls.back().parameters;
        const auto list = parameters.find("PropertyList");
        return list == parameters.end() ? "all" : list->second;
    }

    support::CimServer server_;
};

} // namespace

TEST_F(UnitsTest, NumbersAreShownAsPeopleWriteThem) {
    EXPECT_EQ(Output({"instances", "TEST_Disk", "--property", "Size,Clock,State,Flags"}),
              "                  Size    Clock  State   Flags\n"
              "----------------------  -------  ------  ---------\n"
              "                1500 B  2.3 GHz  None    Read, Run\n"
              "                16 GiB  2.3 GHz  17      Read, Run\n"
              "18446744073709551615 B  2.3 GHz  Vendor  Read, Run\n");
}

TEST_F(UnitsTest, ExactUnitsShowNumbersUnscaled) {
    EXPECT_EQ(Output({"instances", "TEST_Disk", "--property", "Size,Clock", "--where", "Name=b", "--units", "exact"}),
              "         Size     Clock\n"
              "-------------  --------\n"
              "17179869184 B  2300 MHz\n");
}

TEST_F(UnitsTest, VerboseMarksAValueThatTheValueMapDoesNotHave) {
    EXPECT_THAT(Output({"instances", "TEST_Disk", "--property", "State", "--verbose"}),
                HasSubstr("\n17 (not in the map)\n"));
    EXPECT_THAT(Output({"instances", "TEST_Disk", "--property", "State"}), Not(HasSubstr("not in the map")));
}

TEST_F(UnitsTest, JsonAndCsvKeepTypeExactValueAndText) {
    const json disks = support::ParsedJson(Output({"instances", "TEST_Disk", "-o", "json"}));
    EXPECT_EQ(disks[1]["properties"]["Size"], (json{{"type", "uint64"}, {"value", 17179869184U}, {"text", "16 GiB"}}));
    EXPECT_EQ(disks[2]["properties"]["State"], (json{{"type", "uint16"}, {"value", 32769}, {"text", "Vendor"}}));
    EXPECT_THAT(Output({"instances", "TEST_Disk", "-o", "csv"}), HasSubstr(",Size,uint64,17179869184,16 GiB\r\n"));
    EXPECT_THAT(Output({"instances", "TEST_Disk", "-o", "csv", "--units", "exact"}),
                HasSubstr(",Size,uint64,17179869184,17179869184 B\r\n"));
}

TEST_F(UnitsTest, RawShowsTheValues) {
    EXPECT_THAT(Output({"instances", "TEST_Disk", "--property", "Size,State,Flags", "--raw"}),
                HasSubstr("\n         17179869184     17      5\n"));
}

TEST_F(UnitsTest, APropertyMayHoldTheUnitOfAnother) {
    EXPECT_THAT(Output({"instances", "TEST_Disk", "--property", "Amount"}), HasSubstr("\n1.5 kW\n"));
    EXPECT_EQ(RequestedProperties(), "Amount,AmountUnit");
    EXPECT_THAT(Output({"instances", "TEST_Disk", "--property", "Size"}), HasSubstr("16 GiB"));
    EXPECT_EQ(RequestedProperties(), "Size");
}

TEST_F(UnitsTest, ASensorsReadingsHaveTheUnitThatItTells) {
    server_.Answer("EnumerateInstances", "TEST_Sensor",
                   SensorXml("a", "2", "-2", "0", "2350") + SensorXml("b", "61", "3", "3", "7") +
                       SensorXml("c", "1", "0", "0", "5") + SensorXml("d", "5", "", "", "12"));
    EXPECT_EQ(Output({"instances", "TEST_Sensor", "--property", "Name,CurrentReading,UpperThresholdCritical,Number"}),
              "Name  CurrentReading  UpperThresholdCritical  Number\n"
              "----  --------------  ----------------------  ------\n"
              "a            23.5 °C                   80 °C    2350\n"
              "b             7 kB/s                  8 MB/s    2350\n"
              "c                  5                    8000    2350\n"
              "d                 12                    8000    2350\n");
    EXPECT_EQ(RequestedProperties(),
              "Name,CurrentReading,UpperThresholdCritical,Number,BaseUnits,UnitModifier,RateUnits");
}

TEST_F(UnitsTest, AClassThatHasNotAllThreePropertiesIsNoSensor) {
    server_.Answer("GetClass", "TEST_Meter",
                   ClassXml("TEST_Meter", "",
                            DeclarationXml("BaseUnits", "uint16") + DeclarationXml("UnitModifier", "sint32") +
                                DeclarationXml("CurrentReading", "sint32")));
    server_.Answer("EnumerateInstances", "TEST_Meter",
                   InstanceXml("TEST_Meter", "a",
                               PropertyXml("BaseUnits", "uint16", "2") + Number("UnitModifier", "-2") +
                                   Number("CurrentReading", "2350")));
    EXPECT_THAT(Output({"instances", "TEST_Meter", "--property", "CurrentReading"}), HasSubstr("\n          2350\n"));
}

TEST_F(UnitsTest, ConditionsMatchTheTextThatIsShown) {
    server_.Answer("EnumerateInstances", "TEST_Sensor",
                   SensorXml("a", "2", "-2", "0", "2350") + SensorXml("b", "2", "-2", "0", "2450"));
    EXPECT_EQ(Output({"instances", "TEST_Sensor", "--property", "Name", "--where", "CurrentReading=24.5 °C"}),
              "Name\n----\nb\n");
    EXPECT_EQ(Output({"instances", "TEST_Disk", "--property", "Name", "--where", "Clock=2300 MHz", "--where",
                      "State=none", "--units", "exact"}),
              "Name\n----\na\n");
}

TEST_F(UnitsTest, AValueThatHasChangedKeepsTheUnitThatItHad) {
    server_.Answer("EnumerateInstances", "TEST_Sensor", SensorXml("a", "2", "-2", "0", "2350"));
    TerminalProgram program(CIMHTTP_PROGRAM, {"--host", server_.Address(), "watch", "TEST_Sensor", "--property",
                                              "CurrentReading", "--interval", "0.01"});
    ASSERT_TRUE(program.AwaitText("1 instance")) << program.Screen();
    server_.Answer("EnumerateInstances", "TEST_Sensor", SensorXml("a", "2", "-1", "0", "240"));
    EXPECT_TRUE(program.AwaitText("CurrentReading: 23.5 °C → 24 °C\r\n")) << program.Screen();
}

TEST_F(UnitsTest, OneInstanceIsShownWithUnitsAsAListOfThemIs) {
    server_.Answer("GetInstance", "", BareInstanceXml("TEST_Disk", "b", PropertyXml("Size", "uint64", "17179869184")));
    EXPECT_THAT(Output({"instance", "TEST_Disk.Name=\"b\""}), HasSubstr("Size  16 GiB"));
    EXPECT_THAT(Output({"instance", "TEST_Disk.Name=\"b\"", "--units", "exact"}), HasSubstr("Size  17179869184 B"));
    EXPECT_THAT(Output({"instance", "TEST_Disk.Name=\"b\"", "--units", "scaled", "-o", "json"}),
                HasSubstr("\"text\":\"16 GiB\""));
}
