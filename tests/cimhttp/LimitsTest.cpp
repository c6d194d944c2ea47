// What ends a command that reaches a limit, of the answers that are taken or of the system: a line and a status.

#include "CimXml.h"
#include "Failure.h"
#include "ProgramRun.h"
#include "support/CimServer.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using cimhttp::Failure;
using testing::HasSubstr;
using testing::MatchesRegex;

namespace {

constexpr std::uint16_t kHttpPort = 5988;

/// An element with more attributes than are taken.
std::string TooMuch(const std::string& element) {
    std::string xml = '<' + element;
    for (int i = 0; i < 100; ++i) {
        xml += " A" + std::to_string(i) + "=\"\"";
    }
    return xml + "/>";
}

class LimitsTest : public testing::Test {
  protected:
    LimitsTest() {
        server_.Listen(kHttpPort);
        server_.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_Disk\"/>");
        server_.Answer("EnumerateClasses", "", ClassXml("TEST_Disk", ""));
        server_.Answer("EnumerateQualifiers", "", QualifierDeclarationXml("Key", "boolean"));
        server_.Answer("GetClass", "TEST_Disk", ClassXml("TEST_Disk", ""));
        server_.Answer("EnumerateInstances", "TEST_Disk", InstanceXml("TEST_Disk", "a"));
        server_.Answer("EnumerateInstanceNames", "TEST_Disk", PathXml("TEST_Disk", "a"));
        server_.Answer("GetInstance", "", BareInstanceXml("TEST_Disk", "a"));
        for (const char* method : {"Associators", "AssociatorNames", "References", "ReferenceNames"}) {
            server_.Answer(method, "", "");
        }
        server_.Answer("EnumerateInstanceNames", "CIM_Namespace", PathXml("CIM_Namespace", "interop"));
        server_.Answer("GetClass", "CIM_RegisteredProfile", ClassXml("CIM_RegisteredProfile", ""));
        server_.Answer("EnumerateInstances", "CIM_RegisteredProfile", "");
    }

    ProgramRun Run(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--host", server_.Address()});
        return RunCimhttp(arguments);
    }

    std::string Document() const {
        return folder_.WriteFile("requested.xml", "<vyx version=\"1\"><network address=\"" + server_.Address() +
                                                      "\"/><class name=\"TEST_Disk\"/></vyx>");
    }

    support::CimServer server_;
    support::TemporaryDirectory folder_;
};

struct Command {
    std::vector<std::string> arguments;
    std::string method; ///< whose answer is too much
    std::string object;
    std::string element; ///< that it consists of
};

const std::vector<Command> kCommands{
    {{"info"}, "EnumerateClassNames", "", "CLASSNAME"},
    {{"classes"}, "EnumerateClassNames", "", "CLASSNAME"},
    {{"tree"}, "EnumerateClasses", "", "CLASS"},
    {{"qualifiers"}, "EnumerateQualifiers", "", "QUALIFIER.DECLARATION"},
    {{"class", "TEST_Disk"}, "GetClass", "TEST_Disk", "CLASS"},
    {{"class", "TEST_Disk"}, "EnumerateQualifiers", "", "QUALIFIER.DECLARATION"},
    {{"methods", "TEST_Disk"}, "GetClass", "TEST_Disk", "CLASS"},
    {{"methods", "TEST_Disk", "-o", "mof"}, "EnumerateQualifiers", "", "QUALIFIER.DECLARATION"},
    {{"instances", "TEST_Disk"}, "GetClass", "TEST_Disk", "CLASS"},
    {{"instances", "TEST_Disk"}, "EnumerateInstances", "TEST_Disk", "VALUE.NAMEDINSTANCE"},
    {{"instances", "TEST_Disk", "-o", "json"}, "EnumerateInstances", "TEST_Disk", "VALUE.NAMEDINSTANCE"},
    {{"instances", "TEST_Disk", "--paths"}, "EnumerateInstanceNames", "TEST_Disk", "INSTANCENAME"},
    {{"associators", "TEST_Disk.Name=\"a\""}, "Associators", "", "VALUE.OBJECTWITHPATH"},
    {{"associators", "TEST_Disk.Name=\"a\"", "--names"}, "AssociatorNames", "", "OBJECTPATH"},
    {{"references", "TEST_Disk.Name=\"a\""}, "References", "", "VALUE.OBJECTWITHPATH"},
    {{"related", "TEST_Disk.Name=\"a\""}, "ReferenceNames", "", "OBJECTPATH"},
    {{"namespaces"}, "EnumerateInstanceNames", "CIM_Namespace", "INSTANCENAME"},
    {{"profiles"}, "EnumerateInstances", "CIM_RegisteredProfile", "VALUE.NAMEDINSTANCE"},
    {{"instance", "TEST_Disk.Name=\"a\""}, "GetInstance", "", "INSTANCE"},
    {{"watch", "TEST_Disk", "--count", "0"}, "EnumerateInstances", "TEST_Disk", "VALUE.NAMEDINSTANCE"},
};

} // namespace

TEST_F(LimitsTest, AnAnswerBeyondALimitFailsEveryCommand) {
    for (const Command& command : kCommands) {
        SCOPED_TRACE(command.arguments.front() + ": " + command.method);
        support::CimServer& server = server_;
        EXPECT_EQ(Run(command.arguments).status, 0);
        server.Answer(command.method, command.object, TooMuch(command.element));
        const auto run = Run(command.arguments);
        EXPECT_EQ(run.status, Failure::kIncomplete);
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(run.errors, MatchesRegex("cimhttp: .* attributes.*\n"));
        server.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_Disk\"/>");
        server.Answer("EnumerateClasses", "", ClassXml("TEST_Disk", ""));
        server.Answer("EnumerateQualifiers", "", QualifierDeclarationXml("Key", "boolean"));
        server.Answer("GetClass", "TEST_Disk", ClassXml("TEST_Disk", ""));
        server.Answer("EnumerateInstances", "TEST_Disk", InstanceXml("TEST_Disk", "a"));
    }
}

TEST_F(LimitsTest, AnAnswerBeyondALimitLeavesACollectionIncomplete) {
    server_.Answer("EnumerateInstances", "TEST_Disk", TooMuch("VALUE.NAMEDINSTANCE"));
    const auto run = RunCimhttp({"collect", Document()});
    EXPECT_EQ(run.status, Failure::kIncomplete);
    EXPECT_THAT(run.output, HasSubstr("\"complete\":false"));
}

TEST_F(LimitsTest, TooFewDescriptorsFailACommandOrDoNotMatter) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizers need descriptors themselves";
#endif
    const auto runWith = [&](int count, const std::vector<std::string>& arguments) {
        std::vector<std::string> words{"-c",     "ulimit -n " + std::to_string(count) + "; exec \"$@\"",
                                       "sh",     CIMHTTP_PROGRAM,
                                       "--host", server_.Address()};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return support::RunProgram("/bin/sh", words);
    };
    const std::vector<std::vector<std::string>> commands{
        {"classes"},
        {"instances", "TEST_Disk"},
        {"class", "TEST_Disk"},
        {"collect", Document()},
        {"--trace", (folder_.Path() / "trace").string(), "classes"}}; // which has a file open while it connects
    int failed = 0;
    for (const auto& command : commands) {
        const std::string whole = Run(command).output;
        for (int count = 3; count < 12; ++count) {
            SCOPED_TRACE(command.front() + " with " + std::to_string(count) + " descriptors");
            if (runWith(count, {"--version"}).status != 0) {
                continue; // the system cannot even start it
            }
            const auto run = runWith(count, command);
            if (run.status == 0) {
                EXPECT_EQ(run.output, whole);
            } else {
                EXPECT_EQ(run.output, "");
                EXPECT_THAT(run.errors, MatchesRegex("cimhttp: .*Too many open files.*\n"));
                EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);
                ++failed;
            }
        }
    }
    EXPECT_GT(failed, 0);
}
