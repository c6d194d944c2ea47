// Modules of the exporter, and the names that they lead to.

#include "exporter/ModuleFile.h"

#include "Failure.h"
#include "exporter/MetricName.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using cimhttp::MetricUnit;
using cimhttp::ParseModules;
using cimhttp::SnakeCase;
using cimhttp::UnitScale;
using testing::HasSubstr;

namespace {

std::string ErrorOf(const std::string& document) {
    try {
        ParseModules(document, "m.yml");
    } catch (const cimhttp::Failure& failure) {
        EXPECT_EQ(failure.Status(), cimhttp::Failure::kUsage);
        return failure.what();
    }
    return "";
}

TEST(ModuleFileTest, HoldsClassesWithLabelsAndMetrics) {
    const auto modules = ParseModules(R"(
modules:
  storage:
    - class: CIM_FileSystem
      optional: true
      labels: [Name, {mount: Root}, $class]
      metrics:
        - AvailableSpace
        - {property: Reads, type: counter, name: reads, help: How often}
        - {property: Status, states: [OK, Error]}
  empty: []
)",
                                      "m.yml");
    ASSERT_EQ(modules.size(), 2U);
    const auto& rule = modules.at("storage").classes.at(0);
    EXPECT_EQ(rule.className, "CIM_FileSystem");
    EXPECT_TRUE(rule.isOptional);
    ASSERT_EQ(rule.labels.size(), 3U);
    EXPECT_EQ(rule.labels[0].name, "name");
    EXPECT_EQ(rule.labels[1].name, "mount");
    EXPECT_EQ(rule.labels[1].source, "Root");
    EXPECT_EQ(rule.labels[2].name, "class");
    ASSERT_EQ(rule.metrics.size(), 3U);
    EXPECT_EQ(rule.metrics[0].type, cimhttp::MetricRule::Type::kAsDeclared);
    EXPECT_EQ(rule.metrics[1].type, cimhttp::MetricRule::Type::kCounter);
    EXPECT_EQ(rule.metrics[1].help, "How often");
    EXPECT_EQ(rule.metrics[2].type, cimhttp::MetricRule::Type::kStates);
    EXPECT_THAT(rule.metrics[2].states, testing::ElementsAre("OK", "Error"));
}

TEST(ModuleFileTest, SaysInWhichLineWhatIsWrong) {
    const auto ofClass = [](const std::string& members) {
        return ErrorOf("modules:\n  m:\n    - class: A\n" + members);
    };
    EXPECT_THAT(ErrorOf(""), HasSubstr("there are no modules"));
    EXPECT_THAT(ErrorOf("modules: [\n"), HasSubstr("m.yml, line "));
    EXPECT_THAT(ErrorOf("modules: {}\nmore: 1\n"), HasSubstr("m.yml, line 2: 'more' is not known in the document"));
    EXPECT_THAT(ErrorOf("modules:\n  m: 1\n"), HasSubstr("m.yml, line 2: the module m has to be a list"));
    EXPECT_THAT(ErrorOf("modules: {m: [], m: []}"), HasSubstr("'m' is there twice in modules"));
    EXPECT_THAT(ErrorOf("modules:\n  m:\n    - metrics: [A]\n"), HasSubstr("line 3: which class?"));
    EXPECT_THAT(ofClass(""), HasSubstr("line 3: A has no metrics"));
    EXPECT_THAT(ofClass("      metric: [B]\n"), HasSubstr("line 4: 'metric' is not known in a class, which may have "
                                                          "class, labels, metrics or optional"));
    EXPECT_THAT(ofClass("      optional: perhaps\n"), HasSubstr("optional is 'perhaps', neither true nor false"));
    EXPECT_THAT(ofClass("      labels: [$size]\n"), HasSubstr("there is no $size; there are $class, $name and $path"));
    EXPECT_THAT(ofClass("      labels: [{state: B}]\n"), HasSubstr("'state' cannot be the name of a label"));
    EXPECT_THAT(ofClass("      labels: [{__a: B}]\n"), HasSubstr("'__a' cannot be the name of a label"));
    EXPECT_THAT(ofClass("      labels: [B, b]\n"), HasSubstr("two labels with the name b"));
    EXPECT_THAT(ofClass("      metrics: [{name: b}]\n"), HasSubstr("which property?"));
    EXPECT_THAT(ofClass("      metrics: [{property: B, name: 1b}]\n"), HasSubstr("'1b' cannot be the name"));
    EXPECT_THAT(ofClass("      metrics: [{property: B, type: rate}]\n"), HasSubstr("there is no type 'rate'"));
    EXPECT_THAT(ofClass("      metrics: [{property: B, type: gauge, states: [OK]}]\n"),
                HasSubstr("states are for the type states"));
}

TEST(ModuleFileTest, IsReadFromAFileAndMissedByItsName) {
    const support::TemporaryDirectory folder;
    EXPECT_EQ(cimhttp::ReadModules(folder.WriteFile("m.yml", "modules: {m: [{class: A, metrics: [B]}]}")).size(), 1U);
    EXPECT_THROW(cimhttp::ReadModules((folder.Path() / "none.yml").string()), cimhttp::Failure);
}

TEST(ModuleFileTest, TheProgramBringsModulesAlong) {
    std::vector<std::string> names;
    for (const auto& [name, module] : cimhttp::BuiltInModules()) {
        names.push_back(name);
        EXPECT_FALSE(module.classes.empty());
    }
    EXPECT_THAT(names, testing::ElementsAre("health", "network", "sensors", "storage", "system"));
}

TEST(MetricNameTest, IsSpeltAsPrometheusSpellsNames) {
    EXPECT_EQ(SnakeCase("AvailableSpace"), "available_space");
    EXPECT_EQ(SnakeCase("CIM_FileSystem"), "cim_file_system");
    EXPECT_EQ(SnakeCase("DeviceID"), "device_id");
    EXPECT_EQ(SnakeCase("CPUStatus"), "cpu_status");
    EXPECT_EQ(SnakeCase("L2Cache"), "l2_cache");
    EXPECT_EQ(SnakeCase("Ger\xc3\xa4t-1"), "ger_t_1");
    EXPECT_EQ(SnakeCase("1st"), "_1st");
}

TEST(MetricNameTest, HasTheBaseUnitAndSaysWhatCounts) {
    const auto name = [](const std::string& unit, bool isCounter = false) {
        return cimhttp::MetricName("a_b", MetricUnit::Of(UnitScale::Of(unit)), isCounter);
    };
    EXPECT_EQ(name(""), "a_b");
    EXPECT_EQ(name("", true), "a_b_total");
    EXPECT_EQ(name("KiB"), "a_b_bytes");
    EXPECT_EQ(name("Gbit/s"), "a_b_bytes_per_second");
    EXPECT_EQ(name("ms", true), "a_b_seconds_total");
    EXPECT_EQ(name("%"), "a_b_ratio");
    EXPECT_EQ(name("\xc2\xb0"
                   "C"),
              "a_b_celsius");
    EXPECT_EQ(name("mV"), "a_b_volts");
    EXPECT_EQ(name("rpm"), "a_b_rpm");
    EXPECT_EQ(name("packets/s"), "a_b_packets_per_second");
    EXPECT_EQ(cimhttp::MetricName("free_bytes", MetricUnit::Of(UnitScale::Of("B")), false), "free_bytes");
}

TEST(MetricNameTest, NumbersAreInThatUnit) {
    const auto number = [](long double value, const std::string& unit) {
        const UnitScale scale = UnitScale::Of(unit);
        return MetricUnit::Of(scale).InBase({value, scale});
    };
    EXPECT_EQ(number(3, "KiB"), 3072);
    EXPECT_EQ(number(1, "Gbit/s"), 125e6);
    EXPECT_EQ(number(1234, "ms"), 1.234);
    EXPECT_EQ(number(7, "%"), 0.07);
    EXPECT_EQ(number(2350, "mV"), 2.35);
}

} // namespace
