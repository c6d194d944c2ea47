#include "providers/ComputerSystemProvider.h"
#include "providers/FileSystemProvider.h"
#include "providers/LinkProvider.h"
#include "providers/MemoryProvider.h"
#include "providers/NetworkPortProvider.h"
#include "providers/OperatingSystemProvider.h"
#include "providers/ParentProcessProvider.h"
#include "providers/ProcessProvider.h"
#include "providers/ProcessorProvider.h"
#include "providers/SensorProvider.h"
#include "providers/StorageVolumeProvider.h"
#include "schema/DateTime.h"
#include "schema/SchemaReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/statvfs.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

using testing::ElementsAre;

/// A root folder with the files that a test writes.
class Machine : public testing::Test {
  protected:
    Machine() {
        std::string name = testing::TempDir() + "demo-server-XXXXXX";
        root_ = ::mkdtemp(name.data());
        Write("proc/sys/kernel/hostname", "box\n");
    }
    ~Machine() override { std::filesystem::remove_all(root_); }

    void Write(const std::string& path, const std::string& text) const {
        const auto file = root_ / path;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }

    demo::SystemFiles Files() const { return demo::SystemFiles(root_.string()); }

    static std::vector<demo::Instance> All(const demo::InstanceProvider& provider) {
        std::vector<demo::Instance> instances;
        provider.Enumerate([&](const demo::Instance& instance) { instances.push_back(instance); });
        return instances;
    }

    template <typename Provider>
    std::vector<demo::Instance> Provided() const {
        return All(Provider(Files()));
    }

    std::filesystem::path root_;
};

/// A scalar as text; "null" if there is none.
std::string Text(const demo::Instance& instance, const std::string& name) {
    const auto found = instance.values.find(name);
    return found == instance.values.end() || !found->second.AsText() ? "null" : *found->second.AsText();
}

std::vector<std::string> Texts(const demo::Instance& instance, const std::string& name) {
    std::vector<std::string> texts;
    for (const auto& item : *instance.values.at(name).AsArray()) {
        texts.push_back(item.value_or("null"));
    }
    return texts;
}

/// A key of the object to which a reference refers.
std::string KeyOf(const demo::Instance& instance, const std::string& reference, const std::string& key) {
    return *instance.values.at(reference).AsReference()->FindKey(key)->value.AsText();
}

/// The values of a key in the instances among which a provider looks for one with this key.
std::vector<std::string> Candidates(const demo::InstanceProvider& provider, const std::string& key,
                                    const std::string& value) {
    std::vector<std::string> found;
    provider.EnumerateCandidates(
        {std::string(provider.ClassName()), {{key, demo::CimType::kString, demo::Value::Text(value)}}},
        [&](const demo::Instance& instance) { found.push_back(Text(instance, key)); });
    return found;
}

std::vector<std::string> TextOfEach(const std::vector<demo::Instance>& instances, const std::string& name) {
    std::vector<std::string> texts;
    texts.reserve(instances.size());
    for (const auto& instance : instances) {
        texts.push_back(Text(instance, name));
    }
    return texts;
}

TEST_F(Machine, FileSystemsAreTheRealOnesWithTheirPathsUnescaped) {
    Write("proc/filesystems", "nodev\tsysfs\nnodev\tproc\nnodev\ttmpfs\nnodev\tcgroup2\n\text4\n\tvfat\n");
    Write("proc/mounts", "rootfs / ext4 rw,relatime 0 0\n"
                         "proc /proc proc rw 0 0\n"
                         "tmpfs /dev/shm tmpfs rw 0 0\n"
                         "cgroup /somewhere cgroup2 rw 0 0\n"
                         "tmpfs /tmp tmpfs rw,nosuid 0 0\n"
                         "/dev/sdb1 /mnt/my\\040disk\\134 vfat ro,noexec 0 0\n"
                         "/dev/old /tmp2 ext4 rw 0 0\n"
                         "/dev/new /tmp2 ext4 rw 0 0\n"
                         "broken line\n");
    const auto found = Provided<demo::FileSystemProvider>();
    EXPECT_THAT(TextOfEach(found, "Name"), ElementsAre("/", "/mnt/my disk\\", "/tmp", "/tmp2"));
    EXPECT_EQ(Text(found[1], "ReadOnly"), "TRUE");
    EXPECT_EQ(Text(found[1], "CaseSensitive"), "FALSE");
    EXPECT_THAT(Texts(found[1], "MountOptions"), ElementsAre("ro", "noexec"));
    EXPECT_EQ(Text(found[1], "FileSystemSize"), "null");
    EXPECT_EQ(Text(found[2], "PersistenceType"), "3");
    EXPECT_EQ(Text(found[3], "Device"), "/dev/new");
    EXPECT_EQ(Text(found[0], "CSName"), "box");
}

TEST_F(Machine, ThereIsARootFileSystemEvenWithoutAListOfMounts) {
    const auto found = Provided<demo::FileSystemProvider>();
    EXPECT_THAT(TextOfEach(found, "Name"), ElementsAre("/"));
    EXPECT_NE(Text(found[0], "FileSystemSize"), "null");
}

TEST_F(Machine, SensorsHaveTheUnitsOfTheirFiles) {
    const std::string chip = "sys/class/hwmon/hwmon0/";
    Write(chip + "name", "coretemp\n");
    Write(chip + "temp1_input", "-45125\n");
    Write(chip + "temp1_label", "Package\n");
    Write(chip + "temp1_crit", "100000\n");
    Write(chip + "temp1_alarm", "0\n");
    Write(chip + "fan2_input", "1200\n");
    Write(chip + "in0_input", "broken\n");
    Write("proc/pressure/cpu", "some avg10=1.00 avg60=12.05 avg300=0.00 total=1\nfull avg10=0.00\n");
    Write("proc/pressure/io", "some avg10=1.00 avg60=1.5 avg300=0.00 total=1\n");
    const auto found = Provided<demo::SensorProvider>();
    EXPECT_THAT(TextOfEach(found, "DeviceID"),
                ElementsAre("hwmon0/fan2", "hwmon0/in0", "hwmon0/temp1", "pressure/cpu"));
    EXPECT_THAT(TextOfEach(found, "Name"),
                ElementsAre("coretemp fan2", "coretemp in0", "coretemp Package", "waiting for cpu"));
    EXPECT_THAT(TextOfEach(found, "CurrentReading"), ElementsAre("1200", "null", "-45125", "1205"));
    EXPECT_THAT(TextOfEach(found, "BaseUnits"), ElementsAre("19", "5", "2", "65"));
    EXPECT_THAT(TextOfEach(found, "UnitModifier"), ElementsAre("0", "-3", "-3", "-2"));
    EXPECT_EQ(Text(found[2], "UpperThresholdCritical"), "100000");
}

TEST_F(Machine, NetworkPortsSayNullForWhatTheKernelDoesNotKnow) {
    const std::string eth0 = "sys/class/net/eth0/";
    Write(eth0 + "flags", "0x1003\n");
    Write(eth0 + "operstate", "up\n");
    Write(eth0 + "speed", "10000\n");
    Write(eth0 + "address", "02:00:00:00:00:01\n");
    Write(eth0 + "mtu", "1500\n");
    Write(eth0 + "type", "1\n");
    Write(eth0 + "duplex", "full\n");
    Write(eth0 + "statistics/rx_bytes", "18446744073709551615\n");
    Write("sys/class/net/eth1/flags", "0x1003\n");
    Write("sys/class/net/eth1/operstate", "down\n");
    Write("sys/class/net/eth1/speed", "-1\n");
    Write("sys/class/net/eth2/flags", "0x1002\n");
    Write("sys/class/net/lo/flags", "0x9\n");
    Write("sys/class/net/lo/operstate", "unknown\n");
    Write("sys/class/net/lo/type", "772\n");
    Write("sys/class/net/bonding_masters", "\n");
    const auto found = Provided<demo::NetworkPortProvider>();
    EXPECT_THAT(TextOfEach(found, "DeviceID"), ElementsAre("eth0", "eth1", "eth2", "lo"));
    EXPECT_THAT(TextOfEach(found, "EnabledState"), ElementsAre("2", "6", "3", "2"));
    EXPECT_THAT(TextOfEach(found, "Speed"), ElementsAre("10000000000", "null", "null", "null"));
    EXPECT_THAT(TextOfEach(found, "LinkTechnology"), ElementsAre("2", "0", "0", "1"));
    EXPECT_THAT(TextOfEach(found, "HardwareType"), ElementsAre("1", "null", "null", "772"));
    EXPECT_EQ(Text(found[0], "PermanentAddress"), "02:00:00:00:00:01");
    EXPECT_EQ(Text(found[0], "FullDuplex"), "TRUE");
    EXPECT_EQ(Text(found[0], "ActiveMaximumTransmissionUnit"), "1500");
    EXPECT_EQ(Text(found[0], "BytesReceived"), "18446744073709551615");
    EXPECT_EQ(Text(found[1], "PermanentAddress"), "null");
}

TEST_F(Machine, ProcessorsAreThePackagesOfTheirInstructionStreams) {
    std::string info;
    for (int stream = 0; stream < 4; ++stream) {
        info += "processor\t: " + std::to_string(stream) + "\ncpu family\t: 6\nmodel\t\t: 85\n" +
                "model name\t: Intel(R) Xeon(R): Gold\nstepping\t: 7\ncpu MHz\t\t: 2593.906\ncache size\t: 36608 KB\n" +
                "physical id\t: " + std::to_string(stream / 2) + "\ncore id\t\t: 0\nflags\t\t: fpu sse\n\n";
    }
    Write("proc/cpuinfo", info);
    Write("proc/stat", "cpu  0 0 0 0\ncpu0 100 0 50 850 0 0 0 0\ncpu1 0 0 0 1000 0 0 0 0\ncpu2 5 5 5 5 5 5 5\ncpu3\n");
    Write("sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq", "3900000\n");
    const demo::ProcessorProvider provider(Files());
    const auto found = All(provider);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_THAT(TextOfEach(found, "DeviceID"), ElementsAre("cpu0", "cpu1"));
    EXPECT_EQ(Text(found[0], "Name"), "Intel(R) Xeon(R): Gold");
    EXPECT_EQ(Text(found[0], "NumberOfEnabledCores"), "1");
    EXPECT_EQ(Text(found[0], "NumberOfThreads"), "2");
    EXPECT_EQ(Text(found[0], "CurrentClockSpeed"), "2593");
    EXPECT_EQ(Text(found[0], "MaxClockSpeed"), "3900");
    EXPECT_EQ(Text(found[1], "MaxClockSpeed"), "null");
    EXPECT_EQ(Text(found[0], "Signature"), std::to_string(0x065507));
    EXPECT_THAT(Texts(found[0], "Features"), ElementsAre("fpu", "sse"));
    // 150 of 2000 ticks since the start.
    EXPECT_EQ(Text(found[0], "LoadPercentage"), "7");

    // 50 of 100 ticks since then.
    Write("proc/stat", "cpu0 150 0 50 900 0 0 0 0\ncpu1 0 0 0 1000 0 0 0 0\n");
    EXPECT_EQ(Text(All(provider)[0], "LoadPercentage"), "50");
    // Nothing at all since then.
    EXPECT_EQ(Text(All(provider)[0], "LoadPercentage"), "0");
}

TEST_F(Machine, AProcessorWithoutPackageIsStillOne) {
    Write("proc/cpuinfo",
          "processor\t: 0\nBogoMIPS\t: 50.00\nFeatures\t: fp asimd\n\nprocessor\t: 1\n\nHardware : Board\n");
    const auto found = Provided<demo::ProcessorProvider>();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(Text(found[0], "Name"), "processor 0");
    EXPECT_EQ(Text(found[0], "NumberOfEnabledCores"), "2");
    EXPECT_EQ(Text(found[0], "CurrentClockSpeed"), "null");
    EXPECT_EQ(Text(found[0], "Signature"), "null");
    EXPECT_THAT(Texts(found[0], "Features"), ElementsAre("fp", "asimd"));
}

TEST_F(Machine, TheOperatingSystemIsToldFromItsFiles) {
    Write("proc/sys/kernel/ostype", "Linux\n");
    Write("proc/sys/kernel/osrelease", "6.1.0\n");
    Write("proc/sys/kernel/tainted", "4097\n");
    Write("etc/os-release", "NAME=Debian\nPRETTY_NAME=\"Debian GNU/Linux 12\"\n");
    Write("proc/uptime", "93784.56 1.00\n");
    Write("proc/loadavg", "0.50 0.25 0.10 1/100 4321\n");
    Write("proc/stat", "cpu 1\nbtime 1763714340\n");
    Write("proc/meminfo", "MemTotal:  1000 kB\nMemFree: 400 kB\nSwapTotal: 100 kB\nSwapFree: 50 kB\n");
    Write("proc/1/stat", "");
    Write("proc/23/stat", "");
    Write("proc/4x/stat", "");
    const auto found = Provided<demo::OperatingSystemProvider>();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(Text(found[0], "Name"), "Linux");
    EXPECT_EQ(Text(found[0], "Distribution"), "Debian GNU/Linux 12");
    EXPECT_EQ(Text(found[0], "Version"), "6.1.0");
    EXPECT_EQ(Text(found[0], "SystemUpTime"), "93784");
    EXPECT_EQ(Text(found[0], "TaintFlags"), "4097");
    EXPECT_EQ(Text(found[0], "TotalVisibleMemorySize"), "1000");
    EXPECT_EQ(Text(found[0], "TotalVirtualMemorySize"), "1100");
    EXPECT_EQ(Text(found[0], "FreeVirtualMemory"), "450");
    EXPECT_EQ(Text(found[0], "NumberOfProcesses"), "2");
    EXPECT_EQ(Text(found[0], "LastBootUpTime"), demo::Timestamp(std::chrono::system_clock::from_time_t(1763714340)));
    EXPECT_THAT(Texts(found[0], "LoadAverages"), ElementsAre("0.50", "0.25", "0.10"));
}

TEST_F(Machine, ProcessesCanHaveAnyCharacterInTheirNames) {
    Write("proc/stat", "btime 1000\n");
    Write("proc/12/stat", "12 (a) b (c) S 1 12 12 0 -1 4194560 1 2 3 4 250 50 0 0 20 0 3 0 700 8192 2 0 0\n");
    Write("proc/12/status", "Name:\tx\nUid:\t1000\t1000\t1000\t1000\n");
    Write("proc/12/cmdline", std::string("prog\0--flag\0\0last\0", 18));
    Write("proc/13/stat", "13 (short) R 1\n");
    Write("proc/self/stat", "12 (self) R\n");
    const auto found = Provided<demo::ProcessProvider>();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(Text(found[0], "Handle"), "12");
    EXPECT_EQ(Text(found[0], "Name"), "a) b (c");
    EXPECT_EQ(Text(found[0], "ExecutionState"), "4");
    EXPECT_EQ(Text(found[0], "ParentProcessID"), "1");
    EXPECT_EQ(Text(found[0], "UserID"), "1000");
    EXPECT_EQ(Text(found[0], "ThreadCount"), "3");
    EXPECT_EQ(Text(found[0], "Priority"), "20");
    EXPECT_EQ(Text(found[0], "VirtualSize"), "8192");
    EXPECT_EQ(Text(found[0], "WorkingSetSize"), std::to_string(2 * ::sysconf(_SC_PAGESIZE)));
    const auto tick = 1000 / ::sysconf(_SC_CLK_TCK);
    EXPECT_EQ(Text(found[0], "UserModeTime"), std::to_string(250 * tick));
    EXPECT_EQ(Text(found[0], "KernelModeTime"), std::to_string(50 * tick));
    EXPECT_THAT(Texts(found[0], "Arguments"), ElementsAre("prog", "--flag", "", "last"));
}

TEST_F(Machine, AProcessIsFoundByItsHandleAlone) {
    const std::string stat = " (x) S 1 12 12 0 -1 4194560 1 2 3 4 250 50 0 0 20 0 3 0 700 8192 2 0 0\n";
    Write("proc/12/stat", "12" + stat);
    Write("proc/13/stat", "13" + stat);
    Write("proc/self/stat", "12" + stat);
    const demo::ProcessProvider provider(Files());
    EXPECT_THAT(Candidates(provider, "Handle", "13"), ElementsAre("13"));
    for (const char* const handle : {"14", "", "self", "12/../13", "-1"}) {
        EXPECT_TRUE(Candidates(provider, "Handle", handle).empty()) << handle;
    }
    EXPECT_TRUE(Candidates(provider, "Name", "x").empty());
}

TEST_F(Machine, ParentProcessesAreThoseThatAreThere) {
    const auto stat = [](const std::string& parent) {
        return " (x) S " + parent + " 1 1 0 -1 0 1 2 3 4 250 50 0 0 20 0 3 0 700 8192 2 0 0\n";
    };
    Write("proc/1/stat", "1" + stat("0"));
    Write("proc/12/stat", "12" + stat("1"));
    Write("proc/13/stat", "13" + stat("12"));
    Write("proc/14/stat", "14" + stat("99"));
    const auto schema = demo::BuiltInSchema();
    const demo::ProcessProvider processes(Files());
    std::vector<std::string> links;
    for (const auto& link : All(demo::ParentProcessProvider(schema, processes))) {
        links.push_back(KeyOf(link, "Antecedent", "Handle") + '>' + KeyOf(link, "Dependent", "Handle"));
    }
    EXPECT_THAT(links, ElementsAre("1>12", "12>13"));
}

TEST_F(Machine, LinksAreOfEveryObjectAtOneEndWithEveryObjectAtTheOther) {
    const auto schema = demo::BuiltInSchema();
    const demo::ComputerSystemProvider computer(Files());
    const demo::MemoryProvider memory(Files());
    const demo::StorageVolumeProvider volumes(Files(), 2);
    const demo::LinkProvider links(schema, "DEMO_SystemDevice", {"GroupComponent", {&computer}},
                                   {"PartComponent", {&memory, &volumes}});
    std::vector<std::string> parts;
    for (const auto& link : All(links)) {
        EXPECT_EQ(link.className, "DEMO_SystemDevice");
        EXPECT_EQ(KeyOf(link, "GroupComponent", "Name"), "box");
        parts.push_back(KeyOf(link, "PartComponent", "DeviceID"));
    }
    EXPECT_THAT(parts, ElementsAre("memory", "volume-0000000", "volume-0000001"));

    // A link is looked for where its second end is.
    for (const auto& link : All(links)) {
        std::vector<std::string> found;
        links.EnumerateCandidates(demo::PathOf(*schema.FindClass(link.className), link), [&](const auto& candidate) {
            found.push_back(KeyOf(candidate, "PartComponent", "DeviceID"));
        });
        EXPECT_THAT(found, ElementsAre(KeyOf(link, "PartComponent", "DeviceID")));
    }
    EXPECT_TRUE(Candidates(links, "PartComponent", "no reference").empty());
}

TEST_F(Machine, MemoryIsInBytesAndInPages) {
    Write("proc/meminfo", "MemTotal: 8192 kB\nMemFree: 4 kB\nMemAvailable: 4096 kB\nCached: 1 kB\nPageTables: 7 kB\n");
    const auto found = Provided<demo::MemoryProvider>();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(Text(found[0], "Capacity"), "8388608");
    EXPECT_EQ(Text(found[0], "Free"), "4096");
    EXPECT_EQ(Text(found[0], "PageTables"), "7");
    EXPECT_EQ(std::stoull(Text(found[0], "BlockSize")) * std::stoull(Text(found[0], "NumberOfBlocks")), 8388608U);
}

TEST_F(Machine, InstancesOfAnEmptyMachineHaveTheirKeys) {
    std::filesystem::remove_all(root_ / "proc");
    EXPECT_THAT(TextOfEach(Provided<demo::ComputerSystemProvider>(), "Name"), ElementsAre("localhost"));
    EXPECT_THAT(TextOfEach(Provided<demo::OperatingSystemProvider>(), "Name"), ElementsAre("Linux"));
    EXPECT_THAT(TextOfEach(Provided<demo::MemoryProvider>(), "Capacity"), ElementsAre("null"));
    EXPECT_TRUE(Provided<demo::ProcessProvider>().empty());
    EXPECT_TRUE(Provided<demo::ProcessorProvider>().empty());
    EXPECT_TRUE(Provided<demo::NetworkPortProvider>().empty());
}

TEST_F(Machine, VolumesAreAsManyAsWantedAndDifferInTheirNames) {
    const auto found = All(demo::StorageVolumeProvider(Files(), 300));
    ASSERT_EQ(found.size(), 300U);
    EXPECT_EQ(Text(found[0], "DeviceID"), "volume-0000000");
    EXPECT_EQ(Text(found[299], "DeviceID"), "volume-0000299");
    EXPECT_EQ(Text(found[299], "WorldWideName"), "6000000000000000000000000000012B");
    EXPECT_EQ(Text(found[299], "Age"), "00000000045900.000000:000");
    EXPECT_TRUE(All(demo::StorageVolumeProvider(Files(), 0)).empty());
}

TEST_F(Machine, AVolumeIsFoundByItsIdAlone) {
    const demo::StorageVolumeProvider provider(Files(), 300);
    EXPECT_THAT(Candidates(provider, "DeviceID", "volume-0000299"), ElementsAre("volume-0000299"));
    for (const char* const id :
         {"volume-0000300", "volume-", "", "volume--000001", "memory", "99999999999999999999999"}) {
        EXPECT_TRUE(Candidates(provider, "DeviceID", id).empty()) << id;
    }
}

TEST(ThisMachine, HasARootFileSystemOfTheSizeThatTheKernelSays) {
    struct statvfs space {};
    ASSERT_EQ(::statvfs("/", &space), 0);
    std::size_t roots = 0;
    demo::FileSystemProvider(demo::SystemFiles("/")).Enumerate([&](const demo::Instance& instance) {
        if (Text(instance, "Name") != "/") {
            return;
        }
        ++roots;
        EXPECT_EQ(Text(instance, "BlockSize"), std::to_string(space.f_frsize));
        EXPECT_EQ(Text(instance, "FileSystemSize"), std::to_string(space.f_frsize * space.f_blocks));
        EXPECT_LE(std::stoull(Text(instance, "AvailableSpace")), std::stoull(Text(instance, "FileSystemSize")));
    });
    EXPECT_EQ(roots, 1U);
}

TEST(ThisMachine, ListsTheProcessOfTheTest) {
    const std::string id = std::to_string(::getpid());
    std::size_t found = 0;
    demo::ProcessProvider(demo::SystemFiles("/")).Enumerate([&](const demo::Instance& instance) {
        if (Text(instance, "Handle") != id) {
            return;
        }
        ++found;
        EXPECT_EQ(Text(instance, "ParentProcessID"), std::to_string(::getppid()));
        EXPECT_EQ(Text(instance, "UserID"), std::to_string(::getuid()));
    });
    EXPECT_EQ(found, 1U);
}

TEST(DateTime, WritesThe25CharactersOfTheStandard) {
    using namespace std::chrono;
    ::setenv("TZ", "XXX-5:30", 1);
    ::tzset();
    EXPECT_EQ(demo::Timestamp(system_clock::from_time_t(0) + microseconds(12)), "19700101053000.000012+330");
    EXPECT_EQ(demo::MinutesAheadOfUtc(system_clock::from_time_t(0)), 330);
    ::setenv("TZ", "XXX+3", 1);
    ::tzset();
    EXPECT_EQ(demo::Timestamp(system_clock::from_time_t(0)), "19691231210000.000000-180");
    EXPECT_EQ(demo::Interval(hours(24 * 12345) + hours(3) + minutes(4) + seconds(5) + microseconds(6)),
              "00012345030405.000006:000");
}

} // namespace
