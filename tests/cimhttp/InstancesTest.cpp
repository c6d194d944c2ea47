// What cimhttp shows of instances: their classes and paths, what is null, and what could not be taken over.

#include "CimXml.h"
#include "ProgramRun.h"
#include "support/CimServer.h"
#include "support/ParsedJson.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

using nlohmann::json;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr std::uint16_t kHttpPort = 5988;

/// A server with the class TEST_Disk and its subclass TEST_FastDisk, and an instance of each.
class InstancesTest : public testing::Test {
  protected:
    InstancesTest() {
        server_.Listen(kHttpPort);
        server_.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_Disk\"/><CLASSNAME NAME=\"TEST_FastDisk\"/>");
        server_.Answer("GetQualifier", "Key", QualifierDeclarationXml("Key", "boolean"));
        server_.Answer("GetQualifier", "NullDisplay", QualifierDeclarationXml("NullDisplay", "string"));
        Declare("");
        server_.Answer("EnumerateInstances", "TEST_Disk",
                       InstanceXml("TEST_FastDisk", "sdb", Size("7") + PropertyXml("Speed", "uint32", "9")) +
                           InstanceXml("TEST_Disk", "sda", Size("12345")));
        server_.Answer("EnumerateInstanceNames", "TEST_Disk",
                       PathXml("TEST_FastDisk", "sdb") + PathXml("TEST_Disk", "sda"));
    }

    /// Lets TEST_Disk have these properties besides Name and Size, and TEST_FastDisk Speed, too.
    void Declare(const std::string& properties) {
        const std::string all = DeclarationXml("Size", "uint64") + properties;
        server_.Answer("GetClass", "TEST_Disk", ClassXml("TEST_Disk", "", all));
        server_.Answer("GetClass", "TEST_FastDisk",
                       ClassXml("TEST_FastDisk", "TEST_Disk", all + DeclarationXml("Speed", "uint32")));
    }

    /// One instance of TEST_Disk, whose class has a property with these declarations and values beside Name and Size.
    void AnswerWith(const std::string& declarations, const std::string& properties) {
        Declare(declarations);
        server_.Answer("EnumerateInstances", "TEST_Disk", InstanceXml("TEST_Disk", "sda", properties));
        server_.Answer("GetInstance", "", BareInstanceXml("TEST_Disk", "sda", properties));
    }

    static std::string Size(const std::string& size) { return PropertyXml("Size", "uint64", size); }

    ProgramRun Run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--host", server_.Address()});
        return RunCimhttp(arguments);
    }

    std::string Output(const std::vector<std::string>& arguments) const {
        const auto run = Run(arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_EQ(run.errors, "");
        return run.output;
    }

    json Json(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"-o", "json"});
        return support::ParsedJson(Output(arguments));
    }

    /// The collection of TEST_Disk.
    ProgramRun Collect() const {
        const support::TemporaryDirectory folder;
        return RunCimhttp(
            {"collect", folder.WriteFile("requested.xml", "<vyx version=\"1\"><network address=\"" + server_.Address() +
                                                              "\"/><class name=\"TEST_Disk\"/></vyx>")});
    }

    std::size_t CallsOf(const std::string& method) const {
        const auto calls = server_.Calls();
        return static_cast<std::size_t>(
            std::count_if(calls.begin(), calls.end(), [&](const auto& call) { return call.method == method; }));
    }

    support::CimServer::Call LastCallOf(const std::string& method) const {
        const auto calls = server_.Calls();
        const auto found =
            std::find_if(calls.rbegin(), calls.rend(), [&](const auto& call) { return call.method == method; });
        return found == calls.rend() ? support::CimServer::Call() : *found;
    }

    support::CimServer server_;
};

} // namespace

// --- Classes -----------------------------------------------------------------------------------------------------

TEST_F(InstancesTest, InstancesOfSubclassesHaveTheirClassBesideThem) {
    EXPECT_EQ(Output({"instances", "TEST_Disk"}), "Class          Name   Size\n"
                                                  "-------------  ----  -----\n"
                                                  "TEST_Disk      sda   12345\n"
                                                  "TEST_FastDisk  sdb       7\n");
    EXPECT_THAT(Output({"instances", "TEST_Disk", "-o", "plain"}),
                EndsWith("\n\nClass  TEST_FastDisk\nName   sdb\nSize   7\n"));
}

TEST_F(InstancesTest, InstancesOfOneClassHaveNoColumnForTheClass) {
    EXPECT_EQ(Output({"instances", "TEST_Disk", "--where", "Name=sdb"}), "Name  Size\n----  ----\nsdb      7\n");
}

TEST_F(InstancesTest, ExactLeavesOutThoseOfSubclasses) {
    EXPECT_EQ(Output({"instances", "TEST_Disk", "--exact"}), "Name   Size\n----  -----\nsda   12345\n");
}

TEST_F(InstancesTest, JsonHasTheClassAfterThePath) {
    EXPECT_THAT(Output({"instances", "TEST_Disk", "-o", "json", "--property", "Size"}),
                AllOf(HasSubstr(R"({"path":"TEST_Disk.Name=\"sda\"","class":"TEST_Disk","properties":{"Size":{)"),
                      HasSubstr(R"({"path":"TEST_FastDisk.Name=\"sdb\"","class":"TEST_FastDisk","properties":{)")));
}

TEST_F(InstancesTest, DeepAddsThePropertiesOfSubclassesInEveryFormButATable) {
    const json shallow = Json({"instances", "TEST_Disk"});
    EXPECT_FALSE(shallow.at(1).at("properties").contains("Speed"));
    const json deep = Json({"instances", "TEST_Disk", "--deep"});
    EXPECT_FALSE(deep.at(0).at("properties").contains("Speed"));
    EXPECT_EQ(deep.at(1).at("properties").at("Speed").at("value"), 9);
    EXPECT_EQ(Output({"instances", "TEST_Disk", "--deep", "-o", "plain"}),
              "Class  TEST_Disk\nName   sda\nSize   12345\n\n"
              "Class  TEST_FastDisk\nName   sdb\nSize   7\nSpeed  9\n");
    EXPECT_THAT(Output({"instances", "TEST_Disk", "--deep", "-o", "csv"}),
                EndsWith("\"TEST_FastDisk.Name=\"\"sdb\"\"\",Speed,uint32,9,9\r\n"));
    EXPECT_THAT(Output({"instances", "TEST_Disk", "--deep", "-o", "mof"}),
                EndsWith("instance of TEST_FastDisk\n{\n    Name = \"sdb\";\n    Size = 7;\n    Speed = 9;\n};\n"));
}

TEST_F(InstancesTest, ADeepTableSaysThatItLeavesOutThePropertiesOfSubclasses) {
    const auto run = Run({"instances", "TEST_Disk", "--deep"});
    EXPECT_EQ(run.output, Output({"instances", "TEST_Disk"}));
    EXPECT_EQ(run.errors, "cimhttp: properties that only subclasses have are left out; -o plain shows them\n");
    EXPECT_EQ(Run({"instances", "TEST_Disk", "--deep", "--exact"}).errors, "");
    EXPECT_EQ(Run({"instances", "TEST_Disk", "--deep", "--property", "Size"}).errors, "");
}

TEST_F(InstancesTest, ACollectionHasInstancesOfSubclassesWithAllTheirProperties) {
    const json instances = support::ParsedJson(Collect().output).at("classes").at(0).at("instances");
    ASSERT_EQ(instances.size(), 2U);
    EXPECT_EQ(instances.at(1).at("class"), "TEST_FastDisk");
    EXPECT_EQ(instances.at(1).at("properties").at("Speed").at("value"), 9);
}

// --- Paths -------------------------------------------------------------------------------------------------------

TEST_F(InstancesTest, PathsAreReadWithOneRequest) {
    EXPECT_EQ(Output({"instances", "TEST_Disk", "--paths"}), "TEST_Disk.Name=\"sda\"\nTEST_FastDisk.Name=\"sdb\"\n");
    EXPECT_EQ(server_.Calls().size(), 1U);
    EXPECT_EQ(CallsOf("EnumerateInstanceNames"), 1U);
    EXPECT_EQ(Json({"instances", "TEST_Disk", "--paths"}),
              json({"TEST_Disk.Name=\"sda\"", "TEST_FastDisk.Name=\"sdb\""}));
    EXPECT_EQ(Output({"instances", "TEST_Disk", "--paths", "-o", "csv"}),
              "Path\r\n\"TEST_Disk.Name=\"\"sda\"\"\"\r\n\"TEST_FastDisk.Name=\"\"sdb\"\"\"\r\n");
    EXPECT_EQ(Output({"instances", "test_disk", "--paths", "--exact"}), "TEST_Disk.Name=\"sda\"\n");
}

TEST_F(InstancesTest, PathsHaveNoValues) {
    for (const std::vector<std::string>& more :
         std::vector<std::vector<std::string>>{{"--where", "Name=a"}, {"--property", "Name"}, {"--deep"}, {"--raw"}}) {
        std::vector<std::string> arguments{"instances", "TEST_Disk", "--paths"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const auto run = Run(arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.errors, HasSubstr("--paths reads no values"));
    }
    EXPECT_EQ(Run({"instances", "TEST_Disk", "--paths", "-o", "mof"}).status, 2);
    EXPECT_TRUE(server_.Calls().empty());
}

TEST_F(InstancesTest, PathsOfAnUnknownClassAreNotFound) {
    const auto run = Run({"instances", "TEST_Dsik", "--paths"});
    EXPECT_EQ(run.status, 5);
    EXPECT_THAT(run.errors, HasSubstr("there is no class TEST_Dsik"));
    EXPECT_EQ(Run({"instances", "2abc", "--paths"}).status, 2);
}

TEST_F(InstancesTest, APathMayNameTheServerAndTheNamespaceInAnyForm) {
    server_.Answer("GetInstance", "", BareInstanceXml("TEST_Disk", "sda", Size("7")));
    const std::string address = server_.Address();
    for (const std::string& before :
         {std::string(), std::string("root/cimv2:"), std::string("/root/cimv2:"), std::string("/ROOT/CIMV2:"),
          "//" + address + "/root/cimv2:", address + ":5988/root/cimv2:", "http://" + address + ":5988/root/cimv2:"}) {
        const auto run = Run({"instance", before + "TEST_Disk.Name=\"sda\""});
        EXPECT_EQ(run.status, 0) << before << run.errors;
        EXPECT_EQ(LastCallOf("GetInstance").nameSpace, "root/cimv2") << before;
    }
}

TEST_F(InstancesTest, AnInstanceIsReadFromTheNamespaceThatItsPathNames) {
    server_.Answer("GetInstance", "", BareInstanceXml("TEST_Disk", "sda", Size("7")));
    for (const std::string path :
         {"root/interop:TEST_Disk.Name=\"sda\"", "//elsewhere/root/interop:TEST_Disk.Name=\"sda\""}) {
        server_.ForgetCalls();
        const json found = Json({"instance", path});
        EXPECT_EQ(found.at(0).at("path"), "root/interop:TEST_Disk.Name=\"sda\"");
        for (const auto& call : server_.Calls()) {
            EXPECT_EQ(call.nameSpace, "root/interop") << call.method;
        }
        EXPECT_EQ(Json({"instance", found.at(0).at("path")}), found);
    }
}

TEST_F(InstancesTest, WhatTheOtherNamespaceDoesNotHaveIsNotFound) {
    server_.Fail("GetInstance", "", 6, "no such instance");
    EXPECT_EQ(Run({"instance", "root/interop:TEST_Disk.Name=\"sda\""}).status, 5);
    server_.Fail("GetInstance", "", 5, "no such class");
    server_.ForgetCalls();
    EXPECT_THAT(Run({"instance", "root/interop:TEST_Dsik.Name=\"sda\""}).errors,
                HasSubstr("there is no class TEST_Dsik on http://" + server_.Address() + " (did you mean TEST_Disk"));
    EXPECT_EQ(LastCallOf("EnumerateClassNames").nameSpace, "root/interop");
}

// --- Requests ----------------------------------------------------------------------------------------------------

TEST_F(InstancesTest, PropertiesThatAreAskedForAreAllThatTheServerSends) {
    Run({"instances", "TEST_Disk", "--property", "size"});
    EXPECT_EQ(LastCallOf("EnumerateInstances").parameters.at("PropertyList"), "Size");
    Run({"instances", "TEST_Disk", "--property", "Size", "--where", "Name=sd*"});
    EXPECT_EQ(LastCallOf("EnumerateInstances").parameters.at("PropertyList"), "Size,Name");
    Run({"instances", "TEST_Disk", "--where", "Name=sd*"});
    EXPECT_EQ(LastCallOf("EnumerateInstances").parameters.count("PropertyList"), 0U);
}

TEST_F(InstancesTest, WatchReadsWithOneRequestEachTime) {
    const auto run = Run({"watch", "TEST_Disk", "--interval", "0.001", "--count", "3"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(CallsOf("EnumerateInstances"), 4U);
    const auto calls = server_.Calls();
    EXPECT_TRUE(std::all_of(calls.end() - 3, calls.end(),
                            [](const auto& call) { return call.method == "EnumerateInstances"; }));
}

// --- Null --------------------------------------------------------------------------------------------------------

TEST_F(InstancesTest, NullIsToldFromAnEmptyTextInEveryForm) {
    AnswerWith(
        DeclarationXml("Null", "string") + DeclarationXml("Text", "string"),
        "<PROPERTY NAME=\"Null\" TYPE=\"string\"/><PROPERTY NAME=\"Text\" TYPE=\"string\"><VALUE></VALUE></PROPERTY>");
    const std::vector<std::string> both{"instances", "TEST_Disk", "--property", "Null,Text"};
    const auto in = [&](const char* form) {
        auto arguments = both;
        arguments.insert(arguments.end(), {"-o", form});
        return Output(arguments);
    };
    EXPECT_EQ(in("table"), "Null  Text\n----  ----\n–\n");
    EXPECT_EQ(in("plain"), "Null  –\nText\n");
    EXPECT_EQ(support::ParsedJson(in("json")).at(0).at("properties"),
              support::ParsedJson(R"({"Null": {"type": "string", "value": null, "text": ""},
                              "Text": {"type": "string", "value": "", "text": ""}})"));
    EXPECT_THAT(in("csv"), AllOf(HasSubstr(",Null,string,,\"\"\r\n"), HasSubstr(",Text,string,\"\",\"\"\r\n")));
    EXPECT_THAT(in("mof"), HasSubstr("    Null = NULL;\n    Text = \"\";\n"));
}

TEST_F(InstancesTest, ANumberOrABooleanThatIsNullIsNotZero) {
    AnswerWith(DeclarationXml("Flag", "boolean"), "");
    const json properties = Json({"instances", "TEST_Disk"}).at(0).at("properties");
    EXPECT_EQ(properties.at("Flag"), support::ParsedJson(R"({"type": "boolean", "value": null, "text": ""})"));
    EXPECT_EQ(properties.at("Size"), support::ParsedJson(R"({"type": "uint64", "value": null, "text": ""})"));
}

TEST_F(InstancesTest, ElementsOfArraysMayBeNull) {
    AnswerWith(ArrayDeclarationXml("Codes", "uint8") + ArrayDeclarationXml("Names", "string"),
               ArrayXml("Codes", "uint8", {"1", "<null>"}) + ArrayXml("Names", "string", {"a", "<null>", ""}));
    const std::vector<std::string> arguments{"instances", "TEST_Disk", "--property", "Codes,Names"};
    EXPECT_EQ(Output(arguments), "Codes  Names\n-----  --------\n1, –   a, –, \"\"\n");
    const json properties = Json(arguments).at(0).at("properties");
    EXPECT_EQ(properties.at("Codes").at("value"), json({1, nullptr}));
    EXPECT_EQ(properties.at("Names").at("value"), json({"a", nullptr, ""}));
    auto csv = arguments;
    csv.insert(csv.end(), {"-o", "csv"});
    EXPECT_THAT(Output(csv), HasSubstr(",Names,string[],\"[\"\"a\"\",null,\"\"\"\"]\","));
    auto raw = arguments;
    raw.emplace_back("--raw");
    EXPECT_THAT(Output(raw), EndsWith("{1, –}  {a, –, }\n"));
    auto mof = arguments;
    mof.insert(mof.end(), {"-o", "mof"});
    EXPECT_THAT(Output(mof), AllOf(HasSubstr("Codes = {1, NULL};"), HasSubstr("Names = {\"a\", NULL, \"\"};")));
}

TEST_F(InstancesTest, AnArrayThatIsNullIsNotAnEmptyOne) {
    AnswerWith(ArrayDeclarationXml("Null", "uint8") + ArrayDeclarationXml("None", "uint8"),
               "<PROPERTY.ARRAY NAME=\"Null\" TYPE=\"uint8\"/>" + ArrayXml("None", "uint8", {}));
    const json properties = Json({"instances", "TEST_Disk"}).at(0).at("properties");
    EXPECT_EQ(properties.at("Null").at("value"), nullptr);
    EXPECT_EQ(properties.at("None").at("value"), json::array());
}

TEST_F(InstancesTest, ATextForNullStandsForIt) {
    AnswerWith(DeclarationXml("Level", "sint8", QualifierXml("NullDisplay", "string", "none")), "");
    EXPECT_EQ(Output({"instances", "TEST_Disk"}), "Name  Level\n----  -----\nsda    none\n");
    EXPECT_EQ(Output({"instances", "TEST_Disk", "--raw"}), "Name\n----\nsda\n");
    EXPECT_EQ(Json({"instances", "TEST_Disk"}).at(0).at("properties").at("Level"),
              support::ParsedJson(R"({"type": "sint8", "value": null, "text": "none"})"));
}

TEST_F(InstancesTest, OnlyAPropertyWithoutATextForNullIsListedAsWithoutAValue) {
    AnswerWith(DeclarationXml("Level", "sint8", QualifierXml("NullDisplay", "string", "none")) +
                   DeclarationXml("Text", "string"),
               "<PROPERTY NAME=\"Text\" TYPE=\"string\"><VALUE></VALUE></PROPERTY>");
    EXPECT_EQ(Output({"instance", "TEST_Disk.Name=\"sda\""}),
              "Name   sda\nLevel  none\nText\n\nWithout a value: Size\n");
}

// --- Kinds of values ---------------------------------------------------------------------------------------------

TEST_F(InstancesTest, AReferenceIsShownAsItsPath) {
    const std::string reference = "<PROPERTY.REFERENCE NAME=\"Next\" REFERENCECLASS=\"TEST_Disk\"><VALUE.REFERENCE>" +
                                  PathXml("TEST_FastDisk", "sdb") + "</VALUE.REFERENCE></PROPERTY.REFERENCE>";
    AnswerWith("<PROPERTY.REFERENCE NAME=\"Next\" REFERENCECLASS=\"TEST_Disk\"></PROPERTY.REFERENCE>", reference);
    EXPECT_THAT(Output({"instances", "TEST_Disk", "--property", "Next"}), EndsWith("\nTEST_FastDisk.Name=\"sdb\"\n"));
    const json next = Json({"instances", "TEST_Disk"}).at(0).at("properties").at("Next");
    EXPECT_EQ(next, support::ParsedJson(R"({"type": "reference", "value": "TEST_FastDisk.Name=\"sdb\"",
                                    "text": "TEST_FastDisk.Name=\"sdb\""})"));
}

TEST_F(InstancesTest, ACharacterIsShownAsOne) {
    AnswerWith(DeclarationXml("Letter", "char16"), PropertyXml("Letter", "char16", "\xc3\xa4"));
    EXPECT_EQ(Output({"instances", "TEST_Disk", "--property", "Letter"}), "Letter\n------\n\xc3\xa4\n");
    EXPECT_EQ(Json({"instances", "TEST_Disk"}).at(0).at("properties").at("Letter").at("value"), "\xc3\xa4");
}

TEST_F(InstancesTest, AnEmbeddedObjectHasItsStructureInJson) {
    const std::string inner =
        "&lt;INSTANCE CLASSNAME=\"TEST_Setting\"&gt;&lt;PROPERTY NAME=\"Speed\" TYPE=\"uint32\"&gt;"
        "&lt;VALUE&gt;3&lt;/VALUE&gt;&lt;/PROPERTY&gt;&lt;PROPERTY NAME=\"Note\" "
        "TYPE=\"string\"/&gt;&lt;/INSTANCE&gt;";
    server_.Answer("GetQualifier", "EmbeddedObject", QualifierDeclarationXml("EmbeddedObject", "boolean"));
    const std::string isObject = QualifierXml("EmbeddedObject", "boolean", "TRUE");
    AnswerWith(DeclarationXml("Setting", "string", isObject) + ArrayDeclarationXml("Settings", "string", isObject),
               "<PROPERTY NAME=\"Setting\" TYPE=\"string\" EmbeddedObject=\"object\"><VALUE>" + inner +
                   "</VALUE></PROPERTY><PROPERTY.ARRAY NAME=\"Settings\" TYPE=\"string\" EmbeddedObject=\"object\">"
                   "<VALUE.ARRAY><VALUE>" +
                   inner + "</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>");
    const json expected = support::ParsedJson(R"({"class": "TEST_Setting", "properties": {"Speed": 3, "Note": null}})");
    const json properties = Json({"instances", "TEST_Disk"}).at(0).at("properties");
    EXPECT_EQ(properties.at("Setting").at("object"), expected);
    EXPECT_EQ(properties.at("Settings").at("object"), json::array({expected}));
    EXPECT_THAT(properties.at("Setting").at("value").get<std::string>(), HasSubstr("instance of TEST_Setting"));
    EXPECT_FALSE(properties.at("Name").contains("object"));
}

// --- Servers without operations on classes -----------------------------------------------------------------------

TEST_F(InstancesTest, AServerWithoutClassesShowsItsInstancesAsTheyWereSent) {
    server_.Fail("GetClass", "TEST_Disk", 7, "no classes here");
    server_.Fail("GetClass", "TEST_FastDisk", 7, "no classes here");
    const auto run = Run({"instances", "TEST_Disk", "--property", "Speed,Size", "--where", "Name=sd*"});
    EXPECT_THAT(run.output, AllOf(HasSubstr("TEST_FastDisk      9      7\n"), HasSubstr("TEST_Disk")));
    EXPECT_THAT(run.output, Not(HasSubstr("–"))) << "TEST_Disk has no Speed, which is not null";
    EXPECT_EQ(Run({"instances", "TEST_Disk", "--property", "Colour"}).status, 2);
    EXPECT_EQ(Run({"instances", "TEST_Disk", "--where", "Colour=red"}).status, 2);
}

TEST_F(InstancesTest, AServerWithoutClassesAndInstancesHasNothingToComplainAbout) {
    server_.Fail("GetClass", "TEST_Disk", 7, "no classes here");
    server_.Answer("EnumerateInstances", "TEST_Disk", "");
    EXPECT_EQ(Output({"instances", "TEST_Disk", "--property", "Size"}), "no instances\n");
}

// --- What cannot be taken over -----------------------------------------------------------------------------------

TEST_F(InstancesTest, ValuesThatCannotBeTakenOverAreCountedAndMakeAStatus) {
    server_.Answer(
        "EnumerateInstances", "TEST_Disk",
        InstanceXml("TEST_Disk", "sda", PropertyXml("Size", "string", "big") + PropertyXml("Odd", "string", "x")) +
            InstanceXml("TEST_Disk", "sdb", PropertyXml("Size", "string", "small")));
    const auto run = Run({"instances", "TEST_Disk"});
    EXPECT_EQ(run.status, 7);
    EXPECT_EQ(run.output, "Name\n----\nsda\nsdb\n");
    EXPECT_THAT(run.errors,
                StartsWith("cimhttp: 3 values could not be taken over (1 undeclared, 2 of another type); the "
                           "first: Size of TEST_Disk.Name=\"sda\": "));
    EXPECT_THAT(run.errors, EndsWith("; --log warning lists all\n"));
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
}

TEST_F(InstancesTest, TheLogListsWhatCannotBeTakenOver) {
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   InstanceXml("TEST_Disk", "sda", PropertyXml("Odd", "string", "x")) +
                       InstanceXml("TEST_Disk", "sdb", PropertyXml("Strange", "string", "x")));
    const auto run = Run({"--log", "warning", "instances", "TEST_Disk"});
    EXPECT_THAT(run.errors, AllOf(HasSubstr("Odd"), HasSubstr("Strange"), Not(HasSubstr("--log warning lists"))));
}

TEST_F(InstancesTest, ValuesThatCannotBeReadAreCountedByCauseAndTheRestIsShown) {
    server_.Answer(
        "EnumerateInstances", "TEST_Disk",
        InstanceXml("TEST_Disk", "sda", PropertyXml("Size", "uint64", "many")) +
            InstanceXml("TEST_Disk", "sdb", PropertyXml("Size", "uint64", "-1")) +
            InstanceXml("TEST_Disk", "sdc", PropertyXml("Size", "uint64", "3") + PropertyXml("Size", "uint64", "4")));
    const auto run = Run({"instances", "TEST_Disk", "--property", "Name,Size", "--raw", "-o", "csv", "--wide"});
    EXPECT_EQ(run.status, 7);
    EXPECT_THAT(run.output, AllOf(HasSubstr("sda,\r\n"), HasSubstr("sdb,\r\n"), HasSubstr("sdc,4\r\n")));
    EXPECT_THAT(run.errors,
                StartsWith("cimhttp: 3 values could not be taken over (2 that cannot be read, 1 twice in one "
                           "object); the first: Size of TEST_Disk.Name=\"sda\": not an integer: many, at byte "));
}

TEST_F(InstancesTest, WhatCannotBeReadOfAClassIsCountedByTheCommandsThatShowClasses) {
    const std::string unreadable = "<PROPERTY NAME=\"Size\" TYPE=\"uint8\"><VALUE>300</VALUE></PROPERTY>";
    server_.Answer("GetClass", "TEST_Disk", ClassXml("TEST_Disk", "", unreadable));
    server_.Answer("EnumerateClasses", "", ClassXml("TEST_Disk", "", unreadable));
    server_.Answer("EnumerateQualifiers", "", "");
    using Words = std::vector<std::string>;
    for (const Words& words :
         {Words{"class", "TEST_Disk"}, Words{"methods", "TEST_Disk"}, Words{"qualifiers", "--class", "TEST_Disk"},
          Words{"tree"}, Words{"tree", "TEST_Disk"}}) {
        const auto run = Run(words);
        EXPECT_EQ(run.status, 7) << words[0];
        EXPECT_FALSE(run.output.empty()) << words[0];
        EXPECT_THAT(run.errors, StartsWith("cimhttp: 1 value could not be taken over (1 that cannot be read); the "
                                           "first: Size of TEST_Disk: integer out of range: 300, at byte "));
    }
}

TEST_F(InstancesTest, WhatCannotBeReadOfTheDeclaredQualifiersIsCounted) {
    server_.Answer("EnumerateQualifiers", "",
                   "<QUALIFIER.DECLARATION NAME=\"Odd\" TYPE=\"uint8\"><SCOPE CLASS=\"true\"/><VALUE>300</VALUE>"
                   "</QUALIFIER.DECLARATION>");
    const auto run = Run({"qualifiers"});
    EXPECT_EQ(run.status, 7);
    EXPECT_THAT(run.output, HasSubstr("Odd"));
    EXPECT_THAT(
        run.errors,
        HasSubstr("(1 that cannot be read); the first: qualifier declaration Odd: integer out of range: 300, "));
}

TEST_F(InstancesTest, NamesOfClassesThatAreNotInUtf8AreCounted) {
    server_.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_Gr\xfcn\"/>");
    const auto run = Run({"classes"});
    EXPECT_EQ(run.status, 7) << run.output;
    EXPECT_EQ(run.output, "TEST_Gr\xc3\xbcn\n");
    EXPECT_THAT(run.errors, HasSubstr("1 not in UTF-8"));
}

TEST_F(InstancesTest, StrictlyAnAnswerWithAValueThatCannotBeReadFails) {
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   InstanceXml("TEST_Disk", "sda", PropertyXml("Size", "uint64", "many")) +
                       InstanceXml("TEST_Disk", "sdb", PropertyXml("Size", "uint64", "2")));
    const auto run = Run({"--strict", "instances", "TEST_Disk"});
    EXPECT_EQ(run.status, 6);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, HasSubstr("not an integer: many, in property Size of TEST_Disk.Name=\"sda\", at byte "));
}

TEST_F(InstancesTest, ControlCharactersOfAServerAreShownEscaped) {
    AnswerWith(DeclarationXml("Label", "string"), PropertyXml("Label", "string", "a&#1;b\x1b[2Jc"));
    for (const char* form : {"table", "plain", "json", "mof"}) { // CSV has texts as they are, but on a terminal
        const auto run = Run({"instances", "TEST_Disk", "-o", form});
        EXPECT_EQ(run.output.find('\x01'), std::string::npos) << form;
        EXPECT_EQ(run.output.find('\x1b'), std::string::npos) << form;
        EXPECT_THAT(run.output, HasSubstr("a")) << form;
    }
    EXPECT_EQ(
        support::ParsedJson(Run({"instances", "TEST_Disk", "-o", "json"}).output).dump().find("a\\u0001b\\u001b[2Jc") !=
            std::string::npos,
        true);
}

TEST_F(InstancesTest, AnInstanceWithAValueThatCannotBeTakenOverMakesAStatus) {
    server_.Answer("GetInstance", "", BareInstanceXml("TEST_Disk", "sda", PropertyXml("Odd", "string", "x")));
    const auto run = Run({"instance", "TEST_Disk.Name=\"sda\""});
    EXPECT_EQ(run.status, 7);
    EXPECT_THAT(run.output, StartsWith("Name  sda\n"));
    EXPECT_THAT(run.errors, StartsWith("cimhttp: 1 value could not be taken over (1 undeclared); the first: Odd of "));
}

TEST_F(InstancesTest, AnInstanceOfAnotherNamespaceWithAValueThatCannotBeTakenOverMakesAStatus) {
    server_.Answer("GetInstance", "", BareInstanceXml("TEST_Disk", "sda", PropertyXml("Odd", "string", "x")));
    EXPECT_EQ(Run({"instance", "root/interop:TEST_Disk.Name=\"sda\""}).status, 7);
}

TEST_F(InstancesTest, ACollectionWithAValueThatCannotBeTakenOverIsNotComplete) {
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   InstanceXml("TEST_Disk", "sda", PropertyXml("Odd", "string", "x")));
    const auto run = Collect();
    EXPECT_EQ(run.status, 7);
    EXPECT_EQ(support::ParsedJson(run.output).at("complete"), false);
    EXPECT_EQ(support::ParsedJson(run.output).at("classes").at(0).at("instances").size(), 1U);
    EXPECT_THAT(run.errors, StartsWith("cimhttp: 1 value could not be taken over"));
}

TEST_F(InstancesTest, WatchTellsOnceWhatItCannotTakeOverAndAtItsEndTheSum) {
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   InstanceXml("TEST_Disk", "sda", PropertyXml("Odd", "string", "x")));
    const auto run = Run({"watch", "TEST_Disk", "--interval", "0.001", "--count", "2"});
    EXPECT_EQ(run.status, 7);
    EXPECT_THAT(run.errors, testing::MatchesRegex("cimhttp: 1 value could [^\n]*\ncimhttp: 3 values could [^\n]*\n"));
}

TEST_F(InstancesTest, APropertyWithANameBeyondAsciiIsShownLikeAllOthers) {
    Declare(DeclarationXml("H\xc3\xb6he", "uint16"));
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   InstanceXml("TEST_Disk", "sda", PropertyXml("H\xc3\xb6he", "uint16", "7")));
    const auto run = Run({"instances", "TEST_Disk", "--exact", "--property", "h\xc3\xb6he"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "H\xc3\xb6he\n----\n   7\n");
}

TEST_F(InstancesTest, AnUndeclaredPropertyWithANameBeyondAsciiTakesNoOtherInstanceAlong) {
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   InstanceXml("TEST_Disk", "sda", PropertyXml("H\xc3\xb6he", "uint16", "7")) +
                       InstanceXml("TEST_Disk", "sdb"));
    const auto run = Run({"instances", "TEST_Disk", "--deep", "-o", "csv"});
    EXPECT_EQ(run.status, 7);
    EXPECT_THAT(run.output, AllOf(HasSubstr("sda"), HasSubstr("sdb")));
    EXPECT_THAT(run.errors, HasSubstr("(1 undeclared)"));
}

TEST_F(InstancesTest, APropertyWithANameThatCannotBeKeptIsTold) {
    Declare(DeclarationXml("Size", "uint8"));
    const auto run = Run({"instances", "TEST_Disk", "--exact"});
    EXPECT_EQ(run.status, 7);
    EXPECT_EQ(run.output, "Name   Size\n----  -----\nsda   12345\n");
    EXPECT_THAT(run.errors, HasSubstr("(1 that the host cannot keep)"));
}

TEST_F(InstancesTest, AnInstanceWhoseClassIsNotDefinedIsShownAndTold) {
    server_.Fail("GetClass", "TEST_FastDisk", 6, "no such class");
    const auto run = Run({"instances", "TEST_Disk", "--deep", "-o", "json"});
    EXPECT_EQ(run.status, 7);
    EXPECT_EQ(support::ParsedJson(run.output).at(1).at("properties").at("Speed").at("value"), 9);
    EXPECT_THAT(run.errors, HasSubstr("1 without the definition of its class"));
}

TEST_F(InstancesTest, TwoInstancesWithOnePathAreTold) {
    server_.Answer("EnumerateInstances", "TEST_Disk",
                   InstanceXml("TEST_Disk", "sda") + InstanceXml("TEST_Disk", "sda"));
    const auto run = Run({"instances", "TEST_Disk"});
    EXPECT_EQ(run.status, 7);
    EXPECT_THAT(run.errors, HasSubstr("1 with the path of another"));
}
