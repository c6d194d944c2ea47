#include "CimXml.h"
#include "ProgramRun.h"
#include "support/CimServer.h"
#include "support/TemporaryDirectory.h"
#include "support/TerminalProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

using testing::HasSubstr;
using testing::StartsWith;

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr std::uint16_t kHttpsPort = 5989;

class ProgramTest : public testing::Test {
  protected:
    ProgramTest() {
        server_.Listen(kHttpPort);
        server_.Answer(
            "EnumerateClassNames", "",
            "<CLASSNAME NAME=\"TEST_Tape\"/><CLASSNAME NAME=\"TEST_Disk\"/><CLASSNAME NAME=\"CIM_System\"/>");
        server_.Answer("GetQualifier", "Key",
                       "<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\"><SCOPE PROPERTY=\"true\"/>"
                       "</QUALIFIER.DECLARATION>");
        server_.Answer("GetClass", "TEST_Disk",
                       "<CLASS NAME=\"TEST_Disk\"><PROPERTY NAME=\"Size\" TYPE=\"uint64\"/><PROPERTY NAME=\"Name\" "
                       "TYPE=\"string\"><QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>TRUE</VALUE></QUALIFIER>"
                       "</PROPERTY><PROPERTY NAME=\"Vendor\" TYPE=\"string\"/></CLASS>");
        server_.Answer("EnumerateInstances", "TEST_Disk", DiskXml("sdb", "7") + DiskXml("sda", "12345"));
    }

    static std::string DiskXml(const std::string& name, const std::string& size) {
        return "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"TEST_Disk\"><KEYBINDING NAME=\"Name\"><KEYVALUE>" +
               name +
               "</KEYVALUE></KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"TEST_Disk\"><PROPERTY NAME=\"Name\" "
               "TYPE=\"string\"><VALUE>" +
               name + "</VALUE></PROPERTY><PROPERTY NAME=\"Size\" TYPE=\"uint64\"><VALUE>" + size +
               "</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>";
    }

    /// A class whose values have texts for people: value maps, a unit, a text for null.
    void AnswerWithPump() {
        for (const char* name : {"ValueMap", "Values"}) {
            server_.Answer(
                "GetQualifier", name,
                std::string("<QUALIFIER.DECLARATION NAME=\"") + name +
                    "\" TYPE=\"string\" ISARRAY=\"true\"><SCOPE PROPERTY=\"true\"/></QUALIFIER.DECLARATION>");
        }
        for (const char* name : {"Units", "NullDisplay"}) {
            server_.Answer("GetQualifier", name,
                           std::string("<QUALIFIER.DECLARATION NAME=\"") + name +
                               "\" TYPE=\"string\"><SCOPE PROPERTY=\"true\"/></QUALIFIER.DECLARATION>");
        }
        const std::string units = "<QUALIFIER NAME=\"Units\" TYPE=\"string\"><VALUE>Bytes</VALUE></QUALIFIER>";
        const std::string none = "<QUALIFIER NAME=\"NullDisplay\" TYPE=\"string\"><VALUE>none</VALUE></QUALIFIER>";
        server_.Answer(
            "GetClass", "TEST_Pump",
            "<CLASS NAME=\"TEST_Pump\"><PROPERTY NAME=\"Name\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" "
            "TYPE=\"boolean\"><VALUE>TRUE</VALUE></QUALIFIER></PROPERTY>"
            "<PROPERTY NAME=\"State\" TYPE=\"uint16\">" +
                MapXml({"2", "3"}, {"OK", "Degraded"}) + "</PROPERTY><PROPERTY.ARRAY NAME=\"Modes\" TYPE=\"uint8\">" +
                MapXml({"1", "2"}, {"Slow", "Fast"}) + "</PROPERTY.ARRAY><PROPERTY NAME=\"Size\" TYPE=\"uint64\">" +
                units + "</PROPERTY><PROPERTY NAME=\"Level\" TYPE=\"sint8\">" + none + "</PROPERTY></CLASS>");
        server_.Answer(
            "EnumerateInstances", "TEST_Pump",
            PumpXml("p1", "2", "<VALUE>1</VALUE><VALUE>2</VALUE>", "1536", "") +
                PumpXml("p2", "3", "", "7", "<PROPERTY NAME=\"Level\" TYPE=\"sint8\"><VALUE>7</VALUE></PROPERTY>"));
    }

    static std::string MapXml(const std::vector<std::string>& map, const std::vector<std::string>& texts) {
        return QualifierXml("ValueMap", map) + QualifierXml("Values", texts);
    }

    static std::string QualifierXml(const std::string& name, const std::vector<std::string>& values) {
        std::string xml = "<QUALIFIER NAME=\"" + name + "\" TYPE=\"string\"><VALUE.ARRAY>";
        for (const std::string& value : values) {
            xml += "<VALUE>" + value + "</VALUE>";
        }
        return xml + "</VALUE.ARRAY></QUALIFIER>";
    }

    static std::string PumpXml(const std::string& name, const std::string& state, const std::string& modes,
                               const std::string& size, const std::string& level) {
        return "<VALUE.NAMEDINSTANCE>" + PathXml("TEST_Pump", name) +
               "<INSTANCE CLASSNAME=\"TEST_Pump\"><PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE>" + name +
               "</VALUE></PROPERTY><PROPERTY NAME=\"State\" TYPE=\"uint16\"><VALUE>" + state +
               "</VALUE></PROPERTY><PROPERTY.ARRAY NAME=\"Modes\" TYPE=\"uint8\"><VALUE.ARRAY>" + modes +
               "</VALUE.ARRAY></PROPERTY.ARRAY><PROPERTY NAME=\"Size\" TYPE=\"uint64\"><VALUE>" + size +
               "</VALUE></PROPERTY>" + level + "</INSTANCE></VALUE.NAMEDINSTANCE>";
    }

    ProgramRun Run(std::vector<std::string> arguments, const std::vector<std::string>& environment = {}) {
        arguments.insert(arguments.begin(), {"--host", server_.Address()});
        return RunCimhttp(arguments, environment);
    }

    static void ExpectOneLine(const ProgramRun& run, int status, const std::string& part) {
        EXPECT_EQ(run.status, status);
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(run.errors, StartsWith("cimhttp: "));
        EXPECT_THAT(run.errors, HasSubstr(part));
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
    }

    support::CimServer server_;
};

} // namespace

// --- What the commands show --------------------------------------------------------------------------------------

TEST_F(ProgramTest, InfoNamesThePluginTheProviderAndTheServer) {
    server_.Answer("EnumerateQualifiers", "", "");
    const auto run = Run({"info"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("libcimhttp.nsp.so\nprovider    cimhttp, type 2\nserver      http://" +
                                      server_.Address() + "\nclasses     3\n"));
}

TEST_F(ProgramTest, ClassesAreListedInOrder) {
    const auto run = Run({"classes"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "CIM_System\nTEST_Disk\nTEST_Tape\n");
    EXPECT_EQ(run.errors, "");
}

TEST_F(ProgramTest, APatternSelectsClassesWithoutRegardToCase) {
    EXPECT_EQ(Run({"classes", "test_*"}).output, "TEST_Disk\nTEST_Tape\n");
    EXPECT_EQ(Run({"classes", "disk"}).output, "");
}

TEST_F(ProgramTest, APatternThatNoClassMatchesIsSaidSo) {
    const std::string remark = "cimhttp: no class matches; without the pattern there are 3";
    const auto run = Run({"classes", "*tapes", "-o", "json"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "[]\n");
    EXPECT_EQ(run.errors, remark + "\n");
    EXPECT_EQ(Run({"classes", "tape"}).errors, remark + " (a part of a name is '*tape*')\n");
}

TEST_F(ProgramTest, AClassIsShownAsMof) {
    const auto run = Run({"class", "test_disk"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "class TEST_Disk\n"
                          "{\n"
                          "    uint64 Size;\n"
                          "\n"
                          "    [Key]\n"
                          "    string Name;\n"
                          "\n"
                          "    string Vendor;\n"
                          "};\n");
}

TEST_F(ProgramTest, InstancesAreATableWithTheKeysFirstAndNoEmptyColumns) {
    const auto run = Run({"instances", "TEST_Disk"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "Name   Size\n"
                          "----  -----\n"
                          "sda   12345\n"
                          "sdb       7\n");
}

TEST_F(ProgramTest, ATableThatDoesNotFitLosesColumnsAndSaysSo) {
    const auto run = Run({"instances", "TEST_Disk"}, {"COLUMNS=8"});
    EXPECT_EQ(run.output, "Name\n----\nsda\nsdb\n");
    EXPECT_EQ(run.errors, "cimhttp: 1 column is left out; -o plain shows all\n");
}

TEST_F(ProgramTest, ATableNamesTheColumnsThatItLacksWhereThereIsRoom) {
    AnswerWithPump();
    server_.Answer(
        "EnumerateInstances", "TEST_Pump",
        PumpXml("p1", "2", "<VALUE>1</VALUE><VALUE>2</VALUE>", "100000000", "") +
            PumpXml("p2", "3", "", "7", "<PROPERTY NAME=\"Level\" TYPE=\"sint8\"><VALUE>7</VALUE></PROPERTY>"));
    const auto errors = [&](const char* columns) {
        return Run({"instances", "TEST_Pump", "--units", "exact"}, {columns}).errors;
    };
    EXPECT_EQ(errors("COLUMNS=46"), "");
    EXPECT_EQ(errors("COLUMNS=45"), "cimhttp: left out: State; -o plain shows all\n");
    EXPECT_EQ(errors("COLUMNS=43"), "cimhttp: 1 column is left out; -o plain shows all\n");
}

TEST_F(ProgramTest, ANarrowTableKeepsTheHealthOfWhatItLists) {
    std::string cls = "<CLASS NAME=\"TEST_Fan\">";
    for (const char* name : {"HealthState", "Name", "Serial"}) {
        cls += std::string("<PROPERTY NAME=\"") + name + "\" TYPE=\"string\">";
        cls += *name == 'N' ? "<QUALIFIER NAME=\"Key\" TYPE=\"boolean\"><VALUE>TRUE</VALUE></QUALIFIER>" : "";
        cls += "</PROPERTY>";
    }
    server_.Answer("GetClass", "TEST_Fan", cls + "</CLASS>");
    const auto fan = [](const std::string& name, const std::string& health) {
        return "<VALUE.NAMEDINSTANCE>" + PathXml("TEST_Fan", name) +
               "<INSTANCE CLASSNAME=\"TEST_Fan\"><PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE>" + name +
               "</VALUE></PROPERTY><PROPERTY NAME=\"HealthState\" TYPE=\"string\"><VALUE>" + health +
               "</VALUE></PROPERTY><PROPERTY NAME=\"Serial\" TYPE=\"string\"><VALUE>number " + name +
               "</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>";
    };
    server_.Answer("EnumerateInstances", "TEST_Fan", fan("f1", "OK") + fan("f2", "Degraded") + fan("f3", "OK"));
    EXPECT_EQ(Run({"instances", "TEST_Fan"}, {"COLUMNS=20"}).output, "Name  HealthState\n"
                                                                     "----  -----------\n"
                                                                     "f1    OK\n"
                                                                     "f2    Degraded\n"
                                                                     "f3    OK\n");
}

TEST_F(ProgramTest, ChosenPropertiesAreTheColumnsInTheOrderGiven) {
    EXPECT_EQ(Run({"instances", "TEST_Disk", "--property", "size", "--property", "Vendor"}).output,
              " Size  Vendor\n-----  ------\n12345  –\n    7  –\n");
}

TEST_F(ProgramTest, PropertiesMayBeListedWithCommasAndAreShownOnce) {
    const std::string table = " Size  Name\n-----  ----\n12345  sda\n    7  sdb\n";
    EXPECT_EQ(Run({"instances", "TEST_Disk", "--property", "Size,Name"}).output, table);
    EXPECT_EQ(Run({"instances", "TEST_Disk", "--property", "size,NAME,Size", "--property", "name"}).output, table);
    EXPECT_THAT(Run({"watch", "TEST_Disk", "--count", "0", "--property", "Size,Colour"}).errors,
                HasSubstr("no property Colour"));
}

TEST_F(ProgramTest, ATableHasEveryPropertyThatWasAskedForHoweverNarrowItIs) {
    const auto run = Run({"instances", "TEST_Disk", "--property", "Name,Size"}, {"COLUMNS=10"});
    EXPECT_EQ(run.output, "Name  Size\n----  ----\nsda   123…\nsdb      7\n");
    EXPECT_EQ(run.errors, "cimhttp: numbers that end in … are cut off; -o plain shows all\n");
    EXPECT_EQ(Run({"instances", "TEST_Disk", "--property", "Name,Size"}, {"COLUMNS=9"}).output,
              "Name\n  sda\nSize\n  12345\n\nName\n  sdb\nSize\n  7\n");
}

TEST_F(ProgramTest, AnArrayInCsvIsAJsonArray) {
    AnswerWithPump();
    const auto run = Run({"instances", "TEST_Pump", "--property", "Modes", "-o", "csv"});
    EXPECT_EQ(run.output, "Path,Property,Type,Value,Text\r\n"
                          "\"TEST_Pump.Name=\"\"p1\"\"\",Modes,uint8[],\"[1,2]\",\"Slow, Fast\"\r\n"
                          "\"TEST_Pump.Name=\"\"p2\"\"\",Modes,uint8[],[],\"\"\r\n");
}

TEST_F(ProgramTest, MofWritesNull) {
    EXPECT_THAT(Run({"instances", "TEST_Disk", "-o", "mof"}).output, StartsWith("instance of TEST_Disk\n"
                                                                                "{\n"
                                                                                "    Name = \"sda\";\n"
                                                                                "    Size = 12345;\n"
                                                                                "    Vendor = NULL;\n"
                                                                                "};\n"));
}

TEST_F(ProgramTest, ValuesReadByTheirMapsUnitsAndNullTexts) {
    AnswerWithPump();
    EXPECT_EQ(Run({"instances", "TEST_Pump"}).output, //
              "Name  Level  Modes          Size  State\n"
              "----  -----  ----------  -------  --------\n"
              "p1     none  Slow, Fast  1.5 KiB  OK\n"
              "p2        7                  7 B  Degraded\n");
}

TEST_F(ProgramTest, RawValuesAreThePlainOnes) {
    AnswerWithPump();
    EXPECT_EQ(Run({"instances", "TEST_Pump", "--raw"}).output, //
              "Name  Level  Modes   Size  State\n"
              "----  -----  ------  ----  -----\n"
              "p1        –  {1, 2}  1536      2\n"
              "p2        7  {}         7      3\n");
}

TEST_F(ProgramTest, NoInstancesAreSaidSo) {
    server_.Answer("EnumerateInstances", "TEST_Disk", "");
    const auto run = Run({"instances", "TEST_Disk"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "no instances\n");
}

TEST_F(ProgramTest, AConditionThatNoInstanceMeetsIsSaidSo) {
    for (const auto& [form, output] :
         {std::pair("table", ""), std::pair("plain", ""), std::pair("json", "[\n]\n"), std::pair("mof", "")}) {
        const auto run = Run({"instances", "TEST_Disk", "--where", "Name=none", "-o", form});
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.output, output);
        EXPECT_THAT(run.errors, StartsWith("cimhttp: no instance matches; without --where there "));
    }
}

TEST_F(ProgramTest, APathThatIsNoneIsExplained) {
    const std::pair<const char*, const char*> paths[] = {
        {"", "'' is not an object path: at its begin there should be the name of a class"},
        {"2Fan.Name=\"a\"", "at its begin there should be the name of a class"},
        {"T Fan.Name=\"a\"", "behind 'T' there should be a point and the keys"},
        {"T.", "behind 'T.' there should be the name of a key"},
        {"T.Name", "behind 'T.Name' there should be an equals sign"},
        {"T.Name=a", "behind 'T.Name=' there should be a text in double quotes"},
        {"T.Name=\"a", "behind 'T.Name=\"a' there should be the quote that ends the text"},
        {"T.Name=\"a\\\"", "behind 'T.Name=\"a\\\"' there should be the quote that ends the text"},
        {"T.Name=\"a\"x", "behind 'T.Name=\"a\"' there should be a comma or the end"},
        {"T=a", "behind 'T=' there should be a text in double quotes"},
        {"ro ot:T.Name=\"a\"", "before ':T.Name=\"a\"' there should be a namespace such as root/cimv2"},
        {"root//cimv2:T.Name=\"a:b\"", "before ':T.Name=\"a:b\"' there should be a namespace"},
        {"//server.example:T.Name=1", "before ':T.Name=1' there should be a namespace"},
        {"root/:T.Name=1", "before ':T.Name=1' there should be a namespace"},
        {":T.Name=1", "before ':T.Name=1' there should be a namespace"},
        {"/root/cimv2:2T.Name=\"a:b\"", "behind '/root/cimv2:' there should be the name of a class"},
        {"//server.example/root/cimv2:T.Number=1,", "behind '//server.example/root/cimv2:T.Number=1,' there should be"},
        {"server.example:5988/root/cimv2:T.Name=a", "behind 'server.example:5988/root/cimv2:T.Name=' there should be"},
        {"http://[::1]:5988/root/cimv2:T.Name=a", "behind 'http://[::1]:5988/root/cimv2:T.Name=' there should be"},
    };
    for (const auto& [path, explanation] : paths) {
        ExpectOneLine(Run({"instance", path}), 2, explanation);
    }
}

TEST_F(ProgramTest, NoFormLetsAServerSteerTheTerminal) {
    const std::string hostile = "\xc2\x9b"
                                "2J\xe2\x80\xae"; // what XML lets through: a control of C1, a turn of direction
    server_.Answer("EnumerateInstances", "TEST_Disk", DiskXml("sda" + hostile, "1"));
    for (const std::string form : {"table", "plain", "json", "mof"}) {
        const auto run = Run({"instances", "TEST_Disk", "--output", form});
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_THAT(run.output, HasSubstr("sda"));
        EXPECT_THAT(run.output, testing::Not(HasSubstr("\xc2\x9b"))) << form;
        EXPECT_THAT(run.output, testing::Not(HasSubstr("\xe2\x80\xae"))) << form;
    }
    EXPECT_THAT(Run({"instances", "TEST_Disk", "--output", "csv"}).output,
                HasSubstr("sda" + hostile)); // data, in a file
    support::TerminalProgram program(CIMHTTP_PROGRAM,
                                     {"--host", server_.Address(), "instances", "TEST_Disk", "--output", "csv"});
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_THAT(program.Screen(), testing::Not(HasSubstr("\xc2\x9b")));
    server_.Fail("EnumerateInstances", "TEST_Disk", 2, "go away" + hostile);
    EXPECT_THAT(Run({"instances", "TEST_Disk"}).errors,
                testing::AllOf(HasSubstr("go away"), testing::Not(HasSubstr("\xc2\x9b"))));
}

// --- Connection --------------------------------------------------------------------------------------------------

TEST_F(ProgramTest, TlsConnectsToTheSecurePort) {
    const support::TestCertificate certificate(support::TestCertificate::For(server_.Address()));
    server_.ListenTls(kHttpsPort, certificate);
    const auto run = Run({"--tls", "classes"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "CIM_System\nTEST_Disk\nTEST_Tape\n");
}

TEST_F(ProgramTest, ThePasswordComesFromAFileOrTheEnvironment) {
    server_.RequireUser("reader", "s3cret");
    const support::TemporaryDirectory directory;
    const std::string file = (directory.Path() / "password").string();
    std::ofstream(file) << "s3cret\nsecond line\n";
    EXPECT_EQ(Run({"--user", "reader", "--password-file", file, "classes"}).status, 0);
    EXPECT_EQ(Run({"--user", "reader", "classes"}, {"CIMHTTP_PASSWORD=s3cret"}).status, 0);
}

// --- Failures ----------------------------------------------------------------------------------------------------

TEST_F(ProgramTest, AUserWithoutAPasswordIsToldHowToGiveIt) {
    ExpectOneLine(Run({"--user", "reader", "classes"}), 2, "CIMHTTP_PASSWORD");
}

TEST_F(ProgramTest, APasswordFileWithoutAPasswordIsNamed) {
    for (const auto& [file, reason] :
         {std::pair("/no/such/file", " cannot be read: No such file or directory"),
          std::pair("/", " cannot be read: Is a directory"), std::pair("/dev/null", " is empty")}) {
        ExpectOneLine(Run({"--user", "reader", "--password-file", file, "classes"}), 2,
                      std::string("the password file ") + file + reason);
    }
}

TEST_F(ProgramTest, APasswordWithoutAUserIsRefused) {
    const support::TemporaryDirectory directory;
    const std::string file = directory.WriteFile("password", "s3cret");
    std::filesystem::permissions(file, std::filesystem::perms::owner_read);
    ExpectOneLine(Run({"--password-file", file, "classes"}), 2, "give --user");
}

TEST_F(ProgramTest, AServerThatClosesInTheMiddleOfAnAnswerFails) {
    server_.AnswerNextWith("HTTP/1.1 200 OK\r\nContent-Type: application/xml\r\nCIMOperation: MethodResponse\r\n"
                           "Content-Length: 5000\r\n\r\n<?xml version=\"1.0\"?><CIM CIMVERSION=\"2.0\"");
    ExpectOneLine(Run({"classes"}), 6, "cannot be listed");
}

TEST_F(ProgramTest, AServerOfAnotherKindIsDoubted) {
    server_.AnswerNextWith("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n");
    ExpectOneLine(Run({"classes"}), 6,
                  "HTTP error 404 Not Found from " + server_.Address() +
                      ":5988; is it a CIM server that answers there?");
    server_.AnswerNextWith(
        "HTTP/1.1 501 Not Implemented\r\nCIMError: unsupported-operation\r\nContent-Length: 0\r\n\r\n");
    ExpectOneLine(Run({"classes"}), 6, "CIMError: unsupported-operation\n");
}

TEST_F(ProgramTest, AnAnswerThatIsNotXmlIsAFailureOfTheServer) {
    server_.AnswerNextWith("HTTP/1.1 200 OK\r\nContent-Type: application/xml\r\nCIMOperation: MethodResponse\r\n"
                           "Content-Length: 5\r\n\r\nhello");
    ExpectOneLine(Run({"class", "TEST_Disk"}), 6, "the class TEST_Disk cannot be read");
}

TEST_F(ProgramTest, AnUnknownClassIsNotFound) {
    ExpectOneLine(Run({"class", "TEST_None"}), 5, "there is no class TEST_None");
    ExpectOneLine(Run({"instances", "TEST_None"}), 5, "there is no class TEST_None");
    ExpectOneLine(Run({"class", "Xyzzy"}), 5, "; 'cimhttp classes' lists all\n");
}

TEST_F(ProgramTest, AnInstanceOfAnUnknownClassIsNotFound) {
    server_.Fail("GetInstance", "", 5, "no such class");
    for (const std::string path : {"TEST_Dsik", "TEST_Dsik.Name=\"a.b:c\"", "root/cimv2:TEST_Dsik.Name=\"a\"",
                                   "//server.example/root/cimv2:TEST_Dsik.Name=\"a\""}) {
        ExpectOneLine(Run({"instance", path}), 5,
                      "there is no class TEST_Dsik on http://" + server_.Address() + " (did you mean TEST_Disk?)");
    }
}

TEST_F(ProgramTest, AnUnfinishedConditionIsRefused) {
    for (const std::string condition : {"Name", "=sda", ""}) {
        ExpectOneLine(Run({"instances", "TEST_Disk", "--where", condition}), 2,
                      "'" + condition + "' is not a condition such as 'Name=eth*'");
    }
}

TEST_F(ProgramTest, AnInvalidClassNameIsRefused) {
    ExpectOneLine(Run({"class", "2abc"}), 2, "'2abc' is not a class name");
    ExpectOneLine(Run({"instances", "2abc"}), 2, "'2abc' is not a class name");
}

TEST_F(ProgramTest, InstancesThatTheServerRefusesAreAFailedLogin) {
    server_.Fail("EnumerateInstances", "TEST_Disk", 2, "not for you");
    ExpectOneLine(Run({"instances", "TEST_Disk"}), 4, "CIM_ERR_ACCESS_DENIED: not for you");
}

TEST_F(ProgramTest, AnUnknownPropertyIsRefused) {
    ExpectOneLine(Run({"instances", "TEST_Disk", "--property", "Colour"}), 2, "no property Colour");
    ExpectOneLine(Run({"instances", "TEST_Disk", "--property", "no name"}), 2, "no property no name");
    ExpectOneLine(Run({"instances", "TEST_Disk", "--property", "Nmae"}), 2, "no property Nmae (did you mean Name?)");
}

TEST_F(ProgramTest, AMissingPluginFileIsNamed) {
    ExpectOneLine(Run({"--plugin", "/no/such/plugin.so", "classes"}), 1, "/no/such/plugin.so");
}

TEST_F(ProgramTest, ALibraryThatIsNotThePluginIsRefused) {
    ExpectOneLine(Run({"--plugin", CIMHTTP_OTHER_LIBRARY, "classes"}), 1, "is not the plug-in");
}

TEST_F(ProgramTest, ThePluginCanBeNamed) { EXPECT_EQ(Run({"--plugin", CIMHTTP_PLUGIN, "classes"}).status, 0); }

TEST_F(ProgramTest, WrongUsageIsOneLineThatSaysWhatIsWrong) {
    const std::pair<std::vector<std::string>, const char*> wrong[] = {
        {{}, "a command is missing; see cimhttp --help\n"},
        {{"dance"}, "there is no command 'dance'; see cimhttp --help\n"},
        {{"clases"}, "there is no command 'clases' (did you mean class or classes?); see cimhttp --help\n"},
        {{"class"}, "NAME is required; see cimhttp class --help\n"},
        {{"class", "TEST_Disk", "more"}, "class has no use for 'more'; see cimhttp class --help\n"},
        {{"instances", "TEST_Disk", "--were", "a=b"},
         "there is no option --were (did you mean --where?); see cimhttp instances --help\n"},
        {{"--hots=a", "classes"}, "there is no option --hots (did you mean --host?); see cimhttp classes --help\n"},
        {{"--log", "loud", "classes"},
         "--log: there is no 'loud'; give error, warning, info or debug; see cimhttp --help\n"},
        {{"-o", "xml", "classes"},
         "--output: there is no 'xml'; give table, plain, json, csv, mof or dot; see cimhttp --help\n"},
        {{"-o", "mof", "classes"}, "classes does not write mof: it has plain, json or csv\n"},
        {{"--tls=maybe", "classes"}, "--tls: 'maybe' is not true or false; see cimhttp --help\n"},
        {{"--stats=often", "classes"}, "--stats: 'often' is not true or false; see cimhttp --help\n"},
        {{"instances", "TEST_Disk", "--raw=7"}, "--raw: '7' is not true or false; see cimhttp instances --help\n"},
        {{"watch", "TEST_Disk", "--count", "-1"},
         "--count: '-1' is not a whole number from 0 to 1000000000; see cimhttp watch --help\n"},
        {{"watch", "TEST_Disk", "--interval", "abc"},
         "--interval: 'abc' is not a number such as 5 or 0.5; see cimhttp watch --help\n"},
        {{"watch", "TEST_Disk", "--interval", "nan"}, "--interval: 'nan' is not a number"},
        {{"--port", "70000", "classes"}, "--port: '70000' is not a whole number from 1 to 65535; see cimhttp --help\n"},
        {{"--port", "0x1", "classes"}, "--port: '0x1' is not a whole number"},
        {{"--timeout", "0", "classes"}, "--timeout: '0' is not a whole number from 1 to 86400; see cimhttp --help\n"},
        {{"classes", "--host"}, "--host needs a value; see cimhttp --help\n"},
        {{"classes", "--limit"}, "--limit needs a value; see cimhttp classes --help\n"},
        {{"--host", "a", "--host", "b", "classes"}, "--host is given 2 times: once is enough; see cimhttp --help\n"},
        {{"--host", "a", "-c", "b", "classes"},
         "--host and --connection exclude each other: give one of them; see cimhttp --help\n"},
        {{"--host", "ftp://x", "classes"},
         "'ftp://x' is a URL of ftp: a CIM server has http:// or https://, or a name alone\n"},
    };
    for (const auto& [arguments, complaint] : wrong) {
        ExpectOneLine(RunCimhttp(arguments), 2, complaint);
    }
}

TEST_F(ProgramTest, HelpIsNoFailure) {
    const auto run = RunCimhttp({"--help"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, HasSubstr("Usage: cimhttp"));
    const auto command = RunCimhttp({"instances", "--help"});
    EXPECT_EQ(command.status, 0);
    EXPECT_THAT(command.output, HasSubstr("--deep"));
}

TEST_F(ProgramTest, HelpIsACommandToo) {
    EXPECT_EQ(RunCimhttp({"help"}).output, RunCimhttp({"--help"}).output);
    EXPECT_EQ(RunCimhttp({"help", "instances"}).output, RunCimhttp({"instances", "--help"}).output);
    EXPECT_EQ(RunCimhttp({"help", "record"}).output, RunCimhttp({"record", "--help"}).output);
    ExpectOneLine(RunCimhttp({"help", "clases"}), 2,
                  "there is no command 'clases' (did you mean class or classes?); see cimhttp --help\n");
}

TEST_F(ProgramTest, AFlagMayBeTakenBack) {
    EXPECT_EQ(Run({"--stats", "--stats=false", "classes"}).errors, "");
    EXPECT_NE(Run({"--stats=no", "--stats", "classes"}).errors, "");
}

TEST_F(ProgramTest, AFullDiskIsAFailure) {
    const std::string command =
        std::string(CIMHTTP_PROGRAM) + " --host " + server_.Address() + " classes >/dev/full 2>&1";
    const int status = std::system(command.c_str());
    EXPECT_EQ(WEXITSTATUS(status), 1);
}

TEST_F(ProgramTest, AClosedOutputIsAFailureAndNoPlaceForTheConnection) {
    server_.Answer("EnumerateInstances", "TEST_Disk", DiskXml("sda", "1"));
    const auto run = support::RunProgram("/bin/sh", {"-c", "exec \"$@\" >&-", "sh", CIMHTTP_PROGRAM, "--host",
                                                     server_.Address(), "instances", "TEST_Disk"});
    ExpectOneLine(run, 1, "the output could not be written: Bad file descriptor");
}
