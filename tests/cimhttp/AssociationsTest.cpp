// What associations of an instance lead to, and these associations themselves: `associators` and `references`.

#include "CimXml.h"
#include "LinkServer.h"
#include "ProgramRun.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"
#include "support/ParsedJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <map>
#include <set>
#include <sstream>

using nlohmann::json;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr unsigned kInvalidParameter = 4; // of CIM
constexpr unsigned kNotSupported = 7;

using Words = std::vector<std::string>;

demo::DemoServerOptions DemoOptions() {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    options.volumes = 3;
    return options;
}

/// A path without quotes, host and order of its keys, since clients differ in these: all words of it.
std::multiset<std::string> WordsOf(const std::string& path) {
    std::multiset<std::string> words;
    std::string word;
    for (const char letter : path.substr(path.find(':', path.find("root/cimv2")) + 1) + '.') {
        if (letter == '.' || letter == ',' || letter == '=') {
            words.insert(word);
            word.clear();
        } else if (letter != '"' && letter != '\\') {
            word += letter;
        }
    }
    return words;
}

using Paths = std::multiset<std::multiset<std::string>>;

/// Each of the demo server's associations, and objects that have them.
class AssociationsTest : public testing::Test {
  protected:
    static ProgramRun Run(Words arguments) {
        arguments.insert(arguments.begin(), {"--host", support::LoopbackAddress()});
        return RunCimhttp(arguments);
    }

    static std::string Output(const Words& arguments) {
        const auto run = Run(arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        return run.output;
    }

    static json Json(Words arguments) {
        arguments.insert(arguments.end(), {"-o", "json"});
        return support::ParsedJson(Output(arguments));
    }

    static std::string PathOf(const std::string& className, std::size_t index = 0) {
        return Json({"instances", className, "--paths"}).at(index);
    }

    static Paths PathsIn(const json& list) {
        Paths paths;
        for (const json& one : list) {
            paths.insert(WordsOf(one.is_string() ? one.get<std::string>() : one.at("path").get<std::string>()));
        }
        return paths;
    }

    /// What wbemcli answers: `ain` and so on, with its options.
    static Paths Wbemcli(const std::string& operation, Words options, const std::string& path) {
        options.insert(options.begin(), operation);
        options.push_back("http://" + support::LoopbackAddress() + ":5988/root/cimv2:" + path);
        const auto run = support::RunProgram(support::FindProgram("wbemcli"), options);
        EXPECT_EQ(run.status, 0) << run.errors;
        Paths paths;
        std::istringstream lines(run.output);
        for (std::string line; std::getline(lines, line);) {
            paths.insert(WordsOf(line));
        }
        return paths;
    }

    demo::DemoServer server_{DemoOptions()};
};

/// A server whose answers a test makes up.
class AssociationsOfTest : public testing::Test {
  protected:
    AssociationsOfTest() {
        server_.Answer("EnumerateQualifiers", "", QualifierDeclarationXml("Key", "boolean"));
        server_.Answer("GetClass", "TEST_Disk", ClassXml("TEST_Disk", "", DeclarationXml("Size", "uint64")));
        server_.Answer("GetInstance", "a", BareInstanceXml("TEST_Node", "a"));
    }

    static std::string Object(const std::string& path, const std::string& object) {
        return "<VALUE.OBJECTWITHPATH>" + path + object + "</VALUE.OBJECTWITHPATH>";
    }

    static std::string Disk(const std::string& name, const std::string& size, const std::string& host = "h",
                            const std::string& nameSpace = "root/cimv2") {
        return Object(WholePathXml(PathXml("TEST_Disk", name), host, nameSpace),
                      BareInstanceXml("TEST_Disk", name, PropertyXml("Size", "uint64", size)));
    }

    ProgramRun Run(Words arguments) const {
        arguments.insert(arguments.begin(), {"--host", server_.Address()});
        return RunCimhttp(arguments);
    }

    const std::string path_ = "TEST_Node.Name=\"a\"";
    LinkServer server_;
};

} // namespace

namespace {

/// A process that lives as long as the object, and starts none.
class IdleProcess {
  public:
    IdleProcess() : id_(::fork()) {
        while (id_ == 0) {
            ::pause();
        }
    }
    ~IdleProcess() {
        ::kill(id_, SIGKILL);
        ::waitpid(id_, nullptr, 0);
    }
    IdleProcess(const IdleProcess&) = delete;
    IdleProcess& operator=(const IdleProcess&) = delete;

    pid_t Id() const { return id_; }

  private:
    pid_t id_;
};

/// The path of another process.
std::string WithHandle(std::string path, pid_t process) {
    const std::string key = "Handle=\"";
    const std::size_t begin = path.find(key) + key.size();
    return path.replace(begin, path.find('"', begin) - begin, std::to_string(process));
}

} // namespace

// --- Against a whole server --------------------------------------------------------------------------------------

TEST_F(AssociationsTest, OfEveryClassAreThoseThatAnotherClientFinds) {
    if (support::FindProgram("wbemcli").empty()) {
        GTEST_SKIP() << "wbemcli is not installed";
    }
    const Words associations{"DEMO_SystemDevice", "DEMO_HostedFileSystem", "DEMO_RunningOS", "DEMO_OSProcess",
                             "DEMO_ParentProcess"};
    const IdleProcess process;
    const Words objects{PathOf("DEMO_ComputerSystem"), PathOf("DEMO_OperatingSystem"),
                        WithHandle(PathOf("DEMO_Process"), process.Id()), PathOf("DEMO_FileSystem"),
                        PathOf("DEMO_StorageVolume", 1)};
    std::map<std::string, std::size_t> found;
    for (const std::string& cls : associations) {
        for (const std::string& path : objects) {
            if (cls.find("Process") != std::string::npos && path.find("DEMO_OperatingSystem.") == 0) {
                continue; // processes come and go between two requests
            }
            SCOPED_TRACE(cls + " of " + path);
            const Paths ends = PathsIn(Json({"associators", path, "--names", "--class", cls}));
            EXPECT_EQ(ends, Wbemcli("ain", {"-ac", cls}, path));
            const Paths links = PathsIn(Json({"references", path, "--names", "--class", cls}));
            EXPECT_EQ(links, Wbemcli("rin", {"-arc", cls}, path));
            EXPECT_EQ(PathsIn(Json({"associators", path, "--class", cls})), ends);
            EXPECT_EQ(PathsIn(Json({"references", path, "--class", cls})), links);
            found[cls] += ends.size();
        }
    }
    for (const std::string& cls : associations) {
        EXPECT_GT(found[cls], 0U) << cls;
    }
}

TEST_F(AssociationsTest, FiltersSelectWhatTheySelectForAnotherClient) {
    if (support::FindProgram("wbemcli").empty()) {
        GTEST_SKIP() << "wbemcli is not installed";
    }
    const std::string path = PathOf("DEMO_ComputerSystem");
    const std::vector<std::pair<Words, Words>> filters{
        {{"--result-class", "CIM_StorageVolume"}, {"-arc", "CIM_StorageVolume"}},
        {{"--role", "Dependent"}, {"-ar", "Dependent"}},
        {{"--result-role", "Antecedent"}, {"-arr", "Antecedent"}},
        {{"--class", "CIM_Component", "--role", "GroupComponent", "--result-role", "PartComponent", "--result-class",
          "CIM_FileSystem"},
         {"-ac", "CIM_Component", "-ar", "GroupComponent", "-arr", "PartComponent", "-arc", "CIM_FileSystem"}},
        {{"--role", "PartComponent"}, {"-ar", "PartComponent"}}};
    std::set<std::size_t> sizes;
    for (const auto& [own, other] : filters) {
        Words arguments{"associators", path, "--names"};
        arguments.insert(arguments.end(), own.begin(), own.end());
        const Paths ends = PathsIn(Json(arguments));
        EXPECT_EQ(ends, Wbemcli("ain", other, path)) << own.front() << own.back();
        sizes.insert(ends.size());
    }
    EXPECT_GT(sizes.size(), 2U);
    EXPECT_EQ(PathsIn(Json({"references", path, "--names", "--role", "Dependent"})),
              Wbemcli("rin", {"-ar", "Dependent"}, path));
}

TEST_F(AssociationsTest, InstancesHaveAllThatTheirOwnClassHas) {
    const json volumes = Json({"associators", PathOf("DEMO_ComputerSystem"), "--result-class", "DEMO_StorageVolume"});
    ASSERT_EQ(volumes.size(), 3U);
    const json known = Json({"instances", "DEMO_StorageVolume"});
    for (std::size_t i = 0; i < volumes.size(); ++i) {
        EXPECT_THAT(volumes.at(i).at("path").get<std::string>(),
                    EndsWith("/root/cimv2:" + known.at(i).at("path").get<std::string>()));
        EXPECT_EQ(volumes.at(i).at("class"), "DEMO_StorageVolume");
        EXPECT_EQ(volumes.at(i).at("properties"), known.at(i).at("properties"));
    }
}

TEST_F(AssociationsTest, APathOfTheAnswerNamesTheInstanceAgain) {
    const json ends = Json({"associators", PathOf("DEMO_StorageVolume"), "--names"});
    ASSERT_EQ(ends.size(), 1U);
    EXPECT_EQ(Json({"instance", ends.at(0)}).at(0).at("class"), "DEMO_ComputerSystem");
    const json links = Json({"references", PathOf("DEMO_StorageVolume"), "--names"});
    ASSERT_EQ(links.size(), 1U);
    EXPECT_EQ(Json({"instance", links.at(0)}).at(0).at("class"), "DEMO_SystemDevice");
    EXPECT_THAT(Json({"associators", ends.at(0), "--names"}).size(), testing::Gt(3U));
}

TEST_F(AssociationsTest, ATableNamesTheClassAndHasThePropertiesThatWereAskedFor) {
    const std::string path = PathOf("DEMO_ComputerSystem");
    EXPECT_EQ(Output({"associators", path, "--result-class", "DEMO_StorageVolume", "--property", "DeviceID,BlockSize"}),
              "Class               DeviceID        BlockSize\n"
              "------------------  --------------  ---------\n"
              "DEMO_StorageVolume  volume-0000000      512 B\n"
              "DEMO_StorageVolume  volume-0000001      512 B\n"
              "DEMO_StorageVolume  volume-0000002      512 B\n");
    EXPECT_THAT(
        Output({"associators", path, "--result-class", "DEMO_StorageVolume", "--property", "BlockSize", "--raw"}),
        EndsWith("DEMO_StorageVolume        512\n"));
    EXPECT_THAT(Output({"references", path, "--class", "DEMO_RunningOS", "-o", "plain"}),
                StartsWith("Class       DEMO_RunningOS\nAntecedent  DEMO_OperatingSystem."));
    EXPECT_THAT(Output({"references", path, "--class", "DEMO_RunningOS", "-o", "mof"}),
                StartsWith("instance of DEMO_RunningOS\n{\n"));
    EXPECT_THAT(Output({"associators", path, "--class", "DEMO_RunningOS", "--property", "Name", "-o", "csv"}),
                EndsWith(",Name,string,Linux,Linux\r\n"));
    EXPECT_THAT(Output({"references", path, "--names", "-o", "csv"}), StartsWith("Path\r\n\"//"));
}

TEST_F(AssociationsTest, AnUnknownInstanceOrClassIsNotFoundAndAnInstanceWithoutAssociationsHasAnEmptyAnswer) {
    const std::string path = PathOf("DEMO_ComputerSystem");
    EXPECT_EQ(Output({"associators", "DEMO_AllTypes.InstanceID=\"least\""}), "no instances\n");
    EXPECT_EQ(Run({"associators", "DEMO_AllTypes.InstanceID=\"none\""}).status, 5);
    EXPECT_EQ(Run({"references", "DEMO_AllTypes.InstanceID=\"none\"", "--names"}).status, 5);
    const auto unknown = Run({"associators", path, "--class", "DEMO_SystemDevic"});
    EXPECT_EQ(unknown.status, 5);
    EXPECT_THAT(unknown.errors, HasSubstr("there is no class DEMO_SystemDevic on "));
    EXPECT_THAT(unknown.errors, HasSubstr("did you mean DEMO_SystemDevice"));
    EXPECT_THAT(Run({"references", "DEMO_Nothing.Name=\"a\""}).errors, HasSubstr("there is no class DEMO_Nothing"));
    for (const Words& arguments : std::vector<Words>{{"associators", "DEMO_ComputerSystem"},
                                                     {"associators", "DEMO_ComputerSystem.Name="},
                                                     {"associators", path, "--role", "no name"},
                                                     {"associators", path, "--property", "Nothing"},
                                                     {"references", path, "--result-class", "CIM_System"},
                                                     {"references", path, "--names", "--property", "Name"},
                                                     {"references", path, "--names", "-o", "mof"}}) {
        EXPECT_EQ(Run(arguments).status, 2) << arguments.back();
    }
}

// --- Against answers that are made up ----------------------------------------------------------------------------

TEST_F(AssociationsOfTest, InOtherNamespacesAreInstancesOfTheClassesThatThoseHave) {
    server_.Answer("Associators", "a", Disk("1", "7") + Disk("2", "8", server_.Address(), "root/other"));
    const auto run = Run({"associators", path_, "-o", "json"});
    EXPECT_EQ(run.status, 0) << run.errors;
    const json disks = support::ParsedJson(run.output);
    ASSERT_EQ(disks.size(), 2U);
    EXPECT_EQ(disks.at(0).at("path"), "//h/root/cimv2:TEST_Disk.Name=\"1\"");
    EXPECT_EQ(disks.at(1).at("path"), "root/other:TEST_Disk.Name=\"2\"");
    EXPECT_EQ(disks.at(1).at("properties").at("Size").at("value"), 8);
    std::set<std::string> asked;
    for (const auto& call : server_.Calls()) {
        if (call.method == "GetClass") {
            asked.insert(call.body.find("NAME=\"other\"") == std::string::npos ? "cimv2" : "other");
        }
    }
    EXPECT_EQ(asked, (std::set<std::string>{"cimv2", "other"}));
}

TEST_F(AssociationsOfTest, AreAskedForInTheNamespaceOfThePath) {
    server_.Answer("AssociatorNames", "a", "<OBJECTPATH>" + WholePathXml(PathXml("TEST_Disk", "1")) + "</OBJECTPATH>");
    const auto run = Run({"associators", "//anywhere/root/other:" + path_, "--names"});
    EXPECT_EQ(run.output, "//server.example/root/cimv2:TEST_Disk.Name=\"1\"\n");
    ASSERT_EQ(server_.Calls().size(), 1U);
    EXPECT_THAT(server_.Calls().front().body, HasSubstr("<NAMESPACE NAME=\"other\"/>"));
}

TEST_F(AssociationsOfTest, WhatCannotBeTakenOverIsCountedAndTheRestIsShown) {
    const std::string cls = "<CLASSPATH><NAMESPACEPATH><HOST>h</HOST><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/>"
                            "<NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH></NAMESPACEPATH><CLASSNAME "
                            "NAME=\"TEST_Fan\"/></CLASSPATH><CLASS NAME=\"TEST_Fan\"/>";
    server_.Answer("Associators", "a",
                   Disk("1", "7") + Object("", cls) +
                       Object(WholePathXml(PathXml("TEST_Disk", "2")),
                              BareInstanceXml("TEST_Disk", "2", PropertyXml("Colour", "string", "red"))));
    const auto run = Run({"associators", path_, "--property", "Name"});
    EXPECT_EQ(run.status, 7);
    EXPECT_EQ(run.output, "Class      Name\n---------  ----\nTEST_Disk  1\nTEST_Disk  2\n");
    EXPECT_THAT(run.errors,
                StartsWith("cimhttp: 2 things could not be taken over (1 undeclared, 1 that is no instance)"));
    EXPECT_THAT(run.errors, HasSubstr("//h/root/cimv2:TEST_Fan: the server answers with a class"));
}

TEST_F(AssociationsOfTest, AServerWithoutAssociationsIsReported) {
    for (const char* method : {"Associators", "AssociatorNames", "References", "ReferenceNames"}) {
        server_.Fail(method, "a", kNotSupported);
    }
    for (const Words& arguments : std::vector<Words>{{"associators", path_},
                                                     {"associators", path_, "--names"},
                                                     {"references", path_},
                                                     {"references", path_, "--names"}}) {
        const auto run = Run(arguments);
        EXPECT_EQ(run.status, 6);
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(run.errors, StartsWith("cimhttp: the associations of " + path_ + " cannot be read from http://"));
        EXPECT_THAT(run.errors, HasSubstr("CIM_ERR_NOT_SUPPORTED"));
    }
}

TEST_F(AssociationsOfTest, AreSentWithTheFiltersAndThePropertiesThatWereAskedFor) {
    server_.Fail("Associators", "a", kInvalidParameter);
    Run({"associators", path_, "--class", "TEST_Has", "--role", "Whole", "--result-class", "TEST_Disk", "--result-role",
         "Part", "--property", "Size,Name"});
    const std::string body = server_.Calls().front().body;
    EXPECT_THAT(body, AllOf(HasSubstr("NAME=\"AssocClass\"><CLASSNAME NAME=\"TEST_Has\"/>"),
                            HasSubstr("NAME=\"ResultClass\"><CLASSNAME NAME=\"TEST_Disk\"/>"),
                            HasSubstr("NAME=\"Role\"><VALUE>Whole</VALUE>"),
                            HasSubstr("NAME=\"ResultRole\"><VALUE>Part</VALUE>"),
                            HasSubstr("<VALUE.ARRAY><VALUE>Size</VALUE><VALUE>Name</VALUE></VALUE.ARRAY>")));
    Run({"references", path_, "--class", "TEST_Has", "--role", "Whole"});
    const auto calls = server_.Calls();
    const auto references =
        std::find_if(calls.begin(), calls.end(), [](const auto& call) { return call.method == "References"; });
    ASSERT_NE(references, calls.end());
    EXPECT_THAT(references->body, AllOf(HasSubstr("NAME=\"ResultClass\"><CLASSNAME NAME=\"TEST_Has\"/>"),
                                        HasSubstr("NAME=\"Role\"><VALUE>Whole</VALUE>"), Not(HasSubstr("AssocClass")),
                                        Not(HasSubstr("PropertyList"))));
}
