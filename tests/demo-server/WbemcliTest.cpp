// The server before a client that others have written: wbemcli (the Debian package sblim-wbemcli). What it shows is
// compared with what the schema, the instances and the kernel say.
//
// Left out, because wbemcli cannot read them whoever the server is: properties that are arrays of embedded objects and
// null entries in arrays (both of them only in the class DEMO_AllTypes, which therefore has no superclass; with it the
// enumeration of all classes without exception), and the class paths in the answers of the associations of a class.

#include "providers/StorageVolumeProvider.h"
#include "schema/SchemaReader.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"
#include "support/ProgramRun.h"
#include "support/SkipTest.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/utsname.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using Lines = std::vector<std::string>;

constexpr std::size_t kVolumes = 3;
constexpr const char* kClassThatItCannotRead = "DEMO_AllTypes";

struct Transport {
    std::string scheme;
    std::string port;
};

void PrintTo(const Transport& transport, std::ostream* stream) { *stream << transport.scheme; }

utsname Kernel() {
    utsname names{};
    ::uname(&names);
    return names;
}

/// wbemcli before a server that demands a user and a password, over HTTP or HTTPS.
class Wbemcli : public testing::TestWithParam<Transport> {
  protected:
    void SetUp() override {
        if (program_.empty()) {
            GTEST_SKIP() << "wbemcli is not installed";
        }
    }

    /// What it shows about an object, as in "CIM_System". Each option is a word; properties may follow the object.
    support::ProgramRun Run(const std::string& command, Lines options, const std::string& object,
                            const std::string& properties = "", const std::string& user = "a user:pass word") const {
        const std::string url =
            GetParam().scheme + "://" + user + '@' + Server() + (object.empty() ? "" : ":" + object);
        return RunWithUrl(command, std::move(options), url, properties);
    }

    support::ProgramRun RunWithUrl(const std::string& command, Lines options, const std::string& url,
                                   const std::string& properties = "") const {
        options.insert(options.begin(), {command, "-cacert", certificate_});
        options.push_back(url);
        if (!properties.empty()) {
            options.push_back(properties);
        }
        return support::RunProgram(program_, options);
    }

    Lines LinesOf(const std::string& command, const Lines& options, const std::string& object,
                  const std::string& properties = "") const {
        return LinesOf(Run(command, options, object, properties));
    }

    /// The lines of a command in another namespace, which is part of the object.
    Lines LinesIn(const std::string& command, const Lines& options, const std::string& object) const {
        return LinesOf(
            RunWithUrl(command, options, GetParam().scheme + "://a user:pass word@" + Port() + '/' + object));
    }

    static Lines LinesOf(const support::ProgramRun& run) {
        EXPECT_EQ(run.status, 0) << run.output << run.errors;
        Lines lines;
        std::istringstream text(run.output);
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    /// What it puts in front of objects without a path: where it got them.
    std::string Server() const { return Port() + "/root/cimv2"; }
    std::string Port() const { return support::LoopbackAddress() + ':' + GetParam().port; }
    std::string Here(const std::string& object) const { return Server() + ':' + object; }

    /// What it puts in front of objects with a path.
    static std::string There(const std::string& object) {
        return std::string(Kernel().nodename) + "/root/cimv2:" + object;
    }

    const demo::Schema schema_ = demo::BuiltInSchema();

  private:
    demo::DemoServerOptions Options() const {
        demo::DemoServerOptions options;
        options.address = support::LoopbackAddress();
        options.volumes = kVolumes;
        options.users.Add("a user", "pass word");
        options.namespaces["root/site"].push_back({"site.xml", support::ReadFile(EXAMPLE_NAMESPACE)});
        return options;
    }

    const std::string program_ = support::FindProgram("wbemcli");
    const demo::DemoServer server_{Options()};
    const support::TemporaryDirectory directory_;
    const std::string certificate_ = directory_.WriteFile("server.pem", server_.CertificatePem());
};

// How wbemcli shows things.

std::string Shown(const demo::ObjectPath& path) {
    std::string text = path.className;
    for (const auto& key : path.keys) {
        (text += &key == path.keys.data() ? '.' : ',') += key.name + '=';
        if (const auto* const reference = key.value.AsReference()) {
            text += Shown(*reference);
        } else {
            text += '"' + *key.value.AsText() + '"';
        }
    }
    return text;
}

std::string Shown(demo::CimType type, const std::string& text) {
    return type == demo::CimType::kString ? '"' + text + '"' : text;
}

std::string Shown(const demo::Property& property, const demo::Value& value) {
    if (const auto* const text = value.AsText()) {
        return Shown(property.type, *text);
    }
    if (const auto* const reference = value.AsReference()) {
        return Shown(*reference);
    }
    std::string all;
    if (const auto* const items = value.AsArray()) {
        for (const auto& item : *items) {
            all += (&item == items->data() ? "" : ",") + Shown(property.type, *item);
        }
    }
    return all;
}

/// A property's name with what -t adds to it.
std::string Marked(const demo::Property& property, bool withKeys) {
    return property.name + (property.type == demo::CimType::kReference ? "&" : "") +
           (withKeys && property.Is("Key") ? "#" : "") + (property.isArray ? "[]" : "");
}

/// It shows no defaults.
Lines ClassLines(const std::string& headline, const demo::Class& declaration, bool withKeys) {
    Lines lines{headline};
    for (const auto& property : declaration.properties) {
        lines.push_back('-' + Marked(property, withKeys) + '=');
    }
    lines.emplace_back();
    return lines;
}

/// The value of a property in the lines of one instance.
std::string ValueIn(const Lines& lines, const std::string& property) {
    const std::string begin = '-' + property + '=';
    for (const auto& line : lines) {
        if (line.rfind(begin, 0) == 0) {
            return line.substr(begin.size());
        }
    }
    return "absent";
}

/// What stands between the quotes behind a word.
std::string QuotedBehind(const std::string& line, const std::string& word) {
    const auto begin = line.find(word + "=\"") + word.size() + 2;
    return line.substr(begin, line.find('"', begin) - begin);
}

// The objects that the tests ask for.

std::string Computer() {
    return std::string("DEMO_ComputerSystem.CreationClassName=\"DEMO_ComputerSystem\",Name=\"") + Kernel().nodename +
           '"';
}

std::string OperatingSystem() {
    return std::string("DEMO_OperatingSystem.CSCreationClassName=\"DEMO_ComputerSystem\",CSName=\"") +
           Kernel().nodename + "\",CreationClassName=\"DEMO_OperatingSystem\",Name=\"" + Kernel().sysname + '"';
}

std::string Volume(const std::string& id) {
    return std::string("DEMO_StorageVolume.SystemCreationClassName=\"DEMO_ComputerSystem\",SystemName=\"") +
           Kernel().nodename + "\",CreationClassName=\"DEMO_StorageVolume\",DeviceID=\"" + id + '"';
}

TEST_P(Wbemcli, EcnNamesAllClassesOrThoseBelowOne) {
    for (const std::string top : {"", "CIM_LogicalDevice", "DEMO_Process"}) {
        Lines expected;
        for (const auto* const below : schema_.Subclasses(top, true)) {
            expected.push_back(Here(below->name));
        }
        EXPECT_THAT(LinesOf("ecn", {}, top), ElementsAreArray(expected)) << top;
    }
}

TEST_P(Wbemcli, EcShowsTheClassesBelowOneWithTheirProperties) {
    for (const std::string top : {"CIM_ManagedElement", "CIM_Dependency", "CIM_Component"}) {
        Lines expected;
        for (const auto* const below : schema_.Subclasses(top, true)) {
            // Without qualifiers, which it does not ask for here, it cannot know the keys.
            const auto lines = ClassLines(Here(below->name) + " : " + below->superclass, *below, false);
            expected.insert(expected.end(), lines.begin(), lines.end());
        }
        EXPECT_THAT(LinesOf("ec", {"-nl", "-t"}, top), ElementsAreArray(expected));
    }
}

TEST_P(Wbemcli, GcShowsEveryClassWithItsPropertiesKeysArraysAndReferences) {
    for (const auto* const declaration : schema_.Subclasses("", true)) {
        if (declaration->name == kClassThatItCannotRead) {
            continue;
        }
        EXPECT_THAT(LinesOf("gc", {"-nl", "-t"}, declaration->name),
                    ElementsAreArray(ClassLines(Here(declaration->name), *declaration, true)));
    }
}

TEST_P(Wbemcli, GcShowsOnlyTheRequestedProperties) {
    EXPECT_THAT(LinesOf("gc", {}, "DEMO_FileSystem", "Root,Name"), ElementsAre(Here("DEMO_FileSystem Name=,Root=")));
}

TEST_P(Wbemcli, GcdShowsTheDeclarationWithQualifiersAndMethods) {
    EXPECT_THAT(Run("gcd", {}, "CIM_ComputerSystem").output,
                AllOf(HasSubstr("<CLASS NAME=\"CIM_ComputerSystem\" SUPERCLASS=\"CIM_System\">"),
                      HasSubstr("<PROPERTY.ARRAY NAME=\"Dedicated\" TYPE=\"uint16\">")));
}

TEST_P(Wbemcli, EiShowsEveryPropertyOfEveryVolume) {
    Lines expected;
    const demo::Class& declaration = *schema_.FindClass("DEMO_StorageVolume");
    demo::StorageVolumeProvider(demo::SystemFiles("/"), kVolumes).Enumerate([&](const demo::Instance& volume) {
        expected.push_back(Here(Shown(PathOf(declaration, volume))));
        for (const auto& property : declaration.properties) {
            expected.push_back('-' + Marked(property, true) + '=' + Shown(property, volume.ValueOf(property)));
        }
        expected.emplace_back();
    });
    EXPECT_THAT(LinesOf("ei", {"-nl", "-t"}, "CIM_StorageVolume"), ElementsAreArray(expected));
    EXPECT_THAT(LinesOf("ei", {"-nl", "-t", "-cte"}, "DEMO_StorageVolume"), ElementsAreArray(expected));
}

TEST_P(Wbemcli, EiShowsAllManagedElements) {
    support::SkipTestWithout("/sys/class/net");
    const auto lines = LinesOf("ei", {"-nl"}, "CIM_ManagedElement");
    for (const auto* const declaration : schema_.Subclasses("CIM_ManagedElement", true)) {
        if (declaration->name.rfind("DEMO_", 0) == 0) {
            EXPECT_THAT(lines, Contains(StartsWith(Here(declaration->name + '.'))));
        }
    }
}

TEST_P(Wbemcli, CannotReadExactlyOneClassWhichHasNoRelatives) {
    const auto* const unreadable = schema_.FindClass(kClassThatItCannotRead);
    ASSERT_TRUE(unreadable);
    EXPECT_EQ(unreadable->superclass, "");
    EXPECT_THAT(schema_.Subclasses(kClassThatItCannotRead, true), IsEmpty());
}

TEST_P(Wbemcli, EiShowsOnlyTheRequestedProperties) {
    EXPECT_THAT(
        LinesOf("ei", {}, "DEMO_StorageVolume", "Name,Tags,BlockSize"),
        Contains(Here(Volume("volume-0000001")) + " Name=\"volume-0000001\",BlockSize=512,Tags=\"demo\",\"shelf 0\""));
}

TEST_P(Wbemcli, EinNamesTheFileSystemsOfTheKernelsListOfMounts) {
    std::set<std::string> mounted;
    std::set<std::string> disks;
    std::ifstream list("/proc/mounts");
    for (std::string line; std::getline(list, line);) {
        std::istringstream words(line);
        std::string device;
        std::string path;
        words >> device >> path;
        if (path.find('\\') != std::string::npos) {
            GTEST_SKIP() << "a path that wbemcli and the kernel write differently: " << path;
        }
        mounted.insert(path);
        const auto isBelow = [&path](const std::string& folder) { return (path + '/').rfind(folder, 0) == 0; };
        if (device.rfind("/dev/", 0) == 0 && !isBelow("/dev/") && !isBelow("/proc/") && !isBelow("/sys/")) {
            disks.insert(path);
        }
    }
    if (mounted.empty()) {
        GTEST_SKIP() << "there is no list of mounts here";
    }
    std::set<std::string> named;
    for (const auto& line : LinesOf("ein", {}, "CIM_FileSystem")) {
        EXPECT_THAT(line, AllOf(StartsWith(Here("DEMO_FileSystem.")),
                                HasSubstr(std::string("CSName=\"") + Kernel().nodename + '"')));
        named.insert(QuotedBehind(line, "Name"));
    }
    EXPECT_THAT(named, Contains("/"));
    mounted.insert("/"); // which is no mount in a system below a folder of another one
    EXPECT_TRUE(std::includes(mounted.begin(), mounted.end(), named.begin(), named.end()));
    EXPECT_TRUE(std::includes(named.begin(), named.end(), disks.begin(), disks.end()));
}

TEST_P(Wbemcli, GiShowsTheOperatingSystemAsTheKernelNamesIt) {
    const auto lines = LinesOf("gi", {"-nl"}, OperatingSystem());
    EXPECT_EQ(ValueIn(lines, "Name"), std::string("\"") + Kernel().sysname + '"');
    EXPECT_EQ(ValueIn(lines, "CSName"), std::string("\"") + Kernel().nodename + '"');
    EXPECT_EQ(ValueIn(lines, "Version"), std::string("\"") + Kernel().release + '"');
    EXPECT_EQ(lines.size(), schema_.FindClass("DEMO_OperatingSystem")->properties.size() + 2);
    EXPECT_THAT(
        LinesOf("gi", {"-nl"}, Volume("volume-0000002"), "Name,ThinlyProvisioned"),
        ElementsAre(Here(Volume("volume-0000002")), "-Name=\"volume-0000002\"", "-ThinlyProvisioned=FALSE", ""));
}

TEST_P(Wbemcli, GpShowsOneValue) {
    EXPECT_THAT(LinesOf("gp", {}, Volume("volume-0000000"), "BlockSize"), ElementsAre("512"));
}

TEST_P(Wbemcli, AinNamesWhatAComputerIsMadeOfAndEachFilterNarrowsIt) {
    const auto named = [&](const Lines& filters) { return LinesOf("ain", filters, Computer()); };
    const Lines volumes{There(Volume("volume-0000000")), There(Volume("volume-0000001")),
                        There(Volume("volume-0000002"))};
    const auto all = named({});
    for (const auto& volume : volumes) {
        EXPECT_THAT(all, Contains(volume));
    }
    EXPECT_THAT(all, Contains(StartsWith(There("DEMO_FileSystem."))));
    EXPECT_THAT(all, Contains(StartsWith(There("DEMO_OperatingSystem."))));

    EXPECT_THAT(named({"-arc", "CIM_StorageVolume"}), ElementsAreArray(volumes));
    EXPECT_THAT(named({"-ac", "CIM_SystemDevice", "-ar", "GroupComponent", "-arr", "PartComponent", "-arc",
                       "DEMO_StorageVolume"}),
                ElementsAreArray(volumes));
    EXPECT_THAT(named({"-ac", "CIM_RunningOS"}), ElementsAre(StartsWith(There("DEMO_OperatingSystem."))));
    EXPECT_THAT(named({"-ar", "PartComponent"}), IsEmpty());
    EXPECT_THAT(named({"-arr", "Antecedent"}), ElementsAre(StartsWith(There("DEMO_OperatingSystem."))));
}

TEST_P(Wbemcli, AiShowsTheComputerOfAVolume) {
    EXPECT_THAT(LinesOf("ai", {"-nl"}, Volume("volume-0000001"), "Name,CreationClassName"),
                ElementsAre(AllOf(StartsWith(There("DEMO_ComputerSystem.")),
                                  HasSubstr(std::string("Name=\"") + Kernel().nodename + '"')),
                            std::string("-Name=\"") + Kernel().nodename + '"',
                            "-CreationClassName=\"DEMO_ComputerSystem\"", ""));
    const auto whole = LinesOf("ai", {"-nl"}, Volume("volume-0000001"));
    EXPECT_EQ(whole.size(), schema_.FindClass("DEMO_ComputerSystem")->properties.size() + 2);
    EXPECT_THAT(LinesOf("ai", {"-arc", "CIM_Process"}, Volume("volume-0000001")), IsEmpty());
}

TEST_P(Wbemcli, RinAndRiShowTheAssociationsThemselves) {
    const std::string link = "DEMO_SystemDevice.GroupComponent=";
    const auto names = LinesOf("rin", {}, Volume("volume-0000001"));
    EXPECT_THAT(names,
                ElementsAre(AllOf(StartsWith(There(link)), HasSubstr("PartComponent=" + Volume("volume-0000001")))));
    EXPECT_THAT(LinesOf("rin", {"-ar", "PartComponent", "-arc", "CIM_Component"}, Volume("volume-0000001")),
                ElementsAreArray(names));
    EXPECT_THAT(LinesOf("rin", {"-ar", "GroupComponent"}, Volume("volume-0000001")), IsEmpty());

    const auto lines = LinesOf("ri", {"-nl", "-t", "-dr"}, Volume("volume-0000001"));
    EXPECT_THAT(lines, ElementsAre(StartsWith(There(link + '{')), StartsWith("-GroupComponent&#={DEMO_ComputerSystem."),
                                   "-PartComponent&#={" + Volume("volume-0000001") + '}', ""));
    EXPECT_THAT(LinesOf("ri", {"-nl", "-arc", "CIM_RunningOS"}, Computer(), "Since"),
                ElementsAre(StartsWith(There("DEMO_RunningOS.")), StartsWith("-Since="), ""));
}

TEST_P(Wbemcli, ReadsEachNamespace) {
    const auto names = LinesIn("ein", {}, "interop:CIM_Namespace");
    ASSERT_EQ(names.size(), 3U);
    EXPECT_THAT(names, Each(AllOf(StartsWith(Port() + "/interop:CIM_Namespace."),
                                  HasSubstr("ObjectManagerName=\"cimhttp:demo-server\""))));
    for (const char* const name : {"root/cimv2", "interop", "root/site"}) {
        EXPECT_THAT(names, Contains(HasSubstr(",Name=\"" + std::string(name) + '"')));
        EXPECT_THAT(LinesIn("ecn", {}, std::string(name) + ":CIM_ManagedElement"),
                    Contains(Port() + '/' + name + ":CIM_ManagedSystemElement"));
    }
    EXPECT_THAT(LinesIn("ecn", {}, "root/site:CIM_ManagedElement"), Contains(Port() + "/root/site:EXAMPLE_Rack"));
    EXPECT_THAT(LinesIn("ei", {"-nl"}, "root/site:EXAMPLE_Rack"), Contains("-Room=\"cellar\""));
    const auto none = RunWithUrl("ecn", {}, GetParam().scheme + "://a user:pass word@" + Port() + "/root/none");
    EXPECT_THAT(none.output + none.errors, HasSubstr("(3) CIM_ERR_INVALID_NAMESPACE"));
}

TEST_P(Wbemcli, FollowsAProfileIntoTheOtherNamespace) {
    EXPECT_THAT(LinesIn("ei", {"-nl"}, "interop:CIM_ObjectManager"),
                Contains("-Version=\"cimhttp demo-server " CIMHTTP_VERSION "\""));
    const std::string server = "interop:CIM_RegisteredProfile.InstanceID=\"cimhttp:BaseServer\"";
    const std::string network = "interop:CIM_RegisteredProfile.InstanceID=\"cimhttp:HostLANNetworkPort\"";
    EXPECT_THAT(LinesIn("ein", {}, "interop:CIM_RegisteredProfile"),
                ElementsAre(Port() + '/' + server, Port() + '/' + network));
    const auto computer = LinesIn("ain", {}, server);
    ASSERT_THAT(computer, ElementsAre(StartsWith(There("DEMO_ComputerSystem."))));
    // What it is led to can be asked for as it stands there.
    const std::string path = computer[0].substr(computer[0].find('/') + 1);
    EXPECT_THAT(LinesIn("gi", {"-nl"}, path), Contains("-Caption=\"This computer\""));
    support::SkipTestWithout("/sys/class/net");
    const auto ports = LinesIn("ain", {"-ac", "CIM_ElementConformsToProfile"}, network);
    EXPECT_THAT(ports, AllOf(testing::Not(IsEmpty()), Each(StartsWith(There("DEMO_NetworkPort.")))));
    EXPECT_EQ(ports.size(), LinesOf("ein", {}, "CIM_NetworkPort").size());
    EXPECT_THAT(LinesIn("ai", {"-nl"}, server), Contains("-Caption=\"This computer\""));
    EXPECT_THAT(LinesIn("rin", {}, server), ElementsAre(HasSubstr("ManagedElement=root/cimv2:DEMO_ComputerSystem.")));
}

TEST_P(Wbemcli, ShowsTheServersErrors) {
    const auto error = [&](const std::string& command, const std::string& object) {
        const auto run = Run(command, {}, object);
        EXPECT_NE(run.status, 0);
        return run.output + run.errors;
    };
    EXPECT_THAT(error("gc", "Nope"), HasSubstr("(6) CIM_ERR_NOT_FOUND: there is no class Nope"));
    EXPECT_THAT(error("ei", "Nope"), HasSubstr("(5) CIM_ERR_INVALID_CLASS"));
    EXPECT_THAT(error("gi", Volume("volume-9999999")), HasSubstr("(6) CIM_ERR_NOT_FOUND"));
    EXPECT_THAT(error("dc", "CIM_System"), HasSubstr("(7) CIM_ERR_NOT_SUPPORTED"));
}

TEST_P(Wbemcli, IsNotServedWithAWrongPassword) {
    const auto run = Run("ecn", {}, "", "", "a user:wrong");
    EXPECT_NE(run.status, 0);
    EXPECT_THAT(run.output + run.errors, HasSubstr("Invalid username/password"));
}

INSTANTIATE_TEST_SUITE_P(Over, Wbemcli, testing::Values(Transport{"http", "5988"}, Transport{"https", "5989"}),
                         [](const auto& transport) { return transport.param.scheme; });

} // namespace
