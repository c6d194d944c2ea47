#include "HttpExchange.h"
#include "TestPki.h"
#include "support/LoopbackAddress.h"
#include "support/ProgramRun.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

/// The program with its output in a pipe. It is stopped at the end of the test at the latest.
class Program {
  public:
    explicit Program(std::vector<std::string> arguments, const std::string& path = DEMO_SERVER_PROGRAM) {
        arguments.insert(arguments.begin(), path);
        std::vector<char*> pointers;
        pointers.reserve(arguments.size() + 1);
        for (auto& argument : arguments) {
            pointers.push_back(argument.data());
        }
        pointers.push_back(nullptr);
        std::array<int, 2> pipe{};
        EXPECT_EQ(::pipe(pipe.data()), 0);
        process_ = ::fork();
        if (process_ == 0) {
            ::dup2(pipe[1], STDOUT_FILENO);
            ::dup2(pipe[1], STDERR_FILENO);
            ::close(pipe[0]);
            ::close(pipe[1]);
            ::execv(pointers.front(), pointers.data());
            ::_exit(127);
        }
        ::close(pipe[1]);
        output_ = pipe[0];
    }
    ~Program() {
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            Wait();
        }
        ::close(output_);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// A line of its output; empty at the end.
    std::string ReadLine() const {
        std::string line;
        for (char c = 0; ::read(output_, &c, 1) == 1 && c != '\n';) {
            line += c;
        }
        return line;
    }

    std::string ReadAll() const {
        std::string text;
        for (std::string line = ReadLine(); !line.empty(); line = ReadLine()) {
            text += line + '\n';
        }
        return text;
    }

    void Signal(int signal) const { ::kill(process_, signal); }

    /// Its exit status, or minus the number of the signal that ended it.
    int Wait() {
        int status = 0;
        ::waitpid(process_, &status, 0);
        process_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

  private:
    pid_t process_ = -1;
    int output_ = -1;
};

std::string Request() {
    return exchange::Post(exchange::OperationHeaders("EnumerateClassNames"),
                          exchange::OperationBody("EnumerateClassNames"));
}

class ProgramOnSignal : public testing::TestWithParam<int> {};

TEST_P(ProgramOnSignal, SaysThatItListensServesAndStopsInPeace) {
    const std::string address = support::LoopbackAddress();
    Program program({"--address", address});
    EXPECT_EQ(program.ReadLine(), "demo-server: http://" + address + ":5988 ready");
    EXPECT_EQ(program.ReadLine(), "demo-server: https://" + address + ":5989 ready");
    EXPECT_EQ(exchange::Send(Request()).status, 200);
    program.Signal(GetParam());
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_EQ(program.ReadAll(), "");
}

INSTANTIATE_TEST_SUITE_P(Signals, ProgramOnSignal, testing::Values(SIGTERM, SIGINT));

TEST(Program, NamesItsVersionCommitAndCompiler) {
    Program program({"--version"});
    EXPECT_THAT(program.ReadAll(),
                ContainsRegex("^demo-server " CIMHTTP_VERSION "\ncommit: [^\n]+\ncompiler: [A-Za-z]+ [0-9.]+\n"
                              "client library: (bundled|system)\n$"));
    EXPECT_EQ(program.Wait(), 0);
}

TEST(Program, EndsWithOneLineWhenAPortIsInUse) {
    const std::string address = support::LoopbackAddress();
    Program first({"--address", address});
    first.ReadLine();
    first.ReadLine();
    Program second({"--address", address});
    EXPECT_EQ(second.ReadAll(), "demo-server: cannot listen on " + address + " port 5988: Address already in use\n");
    EXPECT_EQ(second.Wait(), 1);
}

TEST(Program, EndsWithOneLineWhenTheAddressBelongsToAnotherMachine) {
    Program program({"--address", "192.0.2.1"});
    EXPECT_THAT(program.ReadAll(), HasSubstr("cannot listen on 192.0.2.1 port 5988"));
    EXPECT_EQ(program.Wait(), 1);
}

TEST(Program, TakesThePasswordFromAFile) {
    const std::string address = support::LoopbackAddress();
    const std::string file = testing::TempDir() + "demo-server-password-" + address;
    ASSERT_TRUE(std::ofstream(file) << "b\n");
    ::chmod(file.c_str(), S_IRUSR | S_IWUSR);
    Program program({"--address", address, "--user", "a", "--password-file", file});
    program.ReadLine();
    program.ReadLine();
    EXPECT_EQ(exchange::Send(Request()).status, 401);
    auto headers = exchange::OperationHeaders("EnumerateClassNames");
    headers["Authorization"] = "Basic YTpi";
    EXPECT_EQ(exchange::Send(exchange::Post(headers, exchange::OperationBody("EnumerateClassNames"))).status, 200);
    ::unlink(file.c_str());
}

TEST(Program, TakesUsersFromAFileAndLogsWhatTheyAskFor) {
    const support::TemporaryDirectory directory;
    const std::string users = directory.WriteFile("users", "# who may\na:b\n");
    ::chmod(users.c_str(), S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP);
    const std::string log = (directory.Path() / "log").string();
    const std::string address = support::LoopbackAddress();
    Program program({"--address", address, "--users", users, "--log", log});
    program.ReadLine();
    program.ReadLine();
    EXPECT_EQ(exchange::Send(Request()).status, 401);
    auto headers = exchange::OperationHeaders("EnumerateClassNames");
    headers["Authorization"] = "Basic YTpi";
    EXPECT_EQ(exchange::Send(exchange::Post(headers, exchange::OperationBody("EnumerateClassNames"))).status, 200);
    program.Signal(SIGTERM);
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_THAT(support::ReadFile(log),
                testing::AllOf(HasSubstr(" - - - 401 - "), HasSubstr(" a EnumerateClassNames - 200 0 ")));
}

TEST(Program, WarnsOfAFileWithPasswordsThatEverybodyMayUse) {
    const support::TemporaryDirectory directory;
    const std::string users = directory.WriteFile("users", "a:b\n");
    const auto firstLineWith = [&](mode_t mode, const std::vector<std::string>& arguments) {
        ::chmod(users.c_str(), mode);
        std::vector<std::string> all{"--address", support::LoopbackAddress()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return Program(all).ReadLine();
    };
    const std::string warning = "demo-server: warning: " + users + " holds passwords, and everybody may ";
    const std::string help = "; chmod 600 " + users + " helps";
    EXPECT_EQ(firstLineWith(0644, {"--users", users}), warning + "read it (mode 0644)" + help);
    EXPECT_EQ(firstLineWith(0602, {"--users", users}), warning + "write it (mode 0602)" + help);
    EXPECT_EQ(firstLineWith(0666, {"--user", "a", "--password-file", users}), warning + "read it (mode 0666)" + help);
    EXPECT_THAT(firstLineWith(0660, {"--users", users}), HasSubstr(" ready"));
}

TEST(Program, TakesACertificateWithItsKeyAndDemandsThoseOfClients) {
    if (support::FindProgram("openssl").empty()) {
        GTEST_SKIP() << "openssl is not installed";
    }
    const std::string address = support::LoopbackAddress();
    const TestPki pki(address);
    ::chmod(pki.ServerKey().c_str(), S_IRUSR | S_IWUSR | S_IROTH);
    const std::string written = pki.Path("written.pem");
    Program program({"--address", address, "--certificate", pki.ServerChain(), "--key", pki.ServerKey(), "--client-ca",
                     pki.Root(), "--certificate-out", written});
    EXPECT_EQ(program.ReadLine(), "demo-server: warning: " + pki.ServerKey() +
                                      " holds a private key, and everybody may read it (mode 0604); chmod 600 " +
                                      pki.ServerKey() + " helps");
    program.ReadLine();
    program.ReadLine();
    EXPECT_EQ(support::ReadFile(written), support::ReadFile(pki.ServerChain()));
    const auto connect = [&](const std::string& arguments) {
        const auto run =
            support::RunProgram("/bin/sh", {"-c", "openssl s_client -tls1_2 -CAfile " + pki.Root() + " -connect " +
                                                      address + ":5989 " + arguments + " </dev/null"});
        return run.output + run.errors;
    };
    EXPECT_THAT(connect("-cert " + pki.Client() + " -cert_chain " + pki.Intermediate() + " -key " + pki.ClientKey()),
                HasSubstr("Verify return code: 0 (ok)"));
    EXPECT_THAT(connect(""), HasSubstr("alert handshake failure"));
}

TEST(Program, EndsWithOneLineWhenACertificateCannotBeUsed) {
    const support::TemporaryDirectory directory;
    const std::string garbage = directory.WriteFile("garbage.pem", "x\n");
    ::chmod(garbage.c_str(), S_IRUSR | S_IWUSR);
    const auto output = [](const std::vector<std::string>& arguments) {
        std::vector<std::string> all{"--address", support::LoopbackAddress()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        Program program(all);
        const std::string text = program.ReadAll();
        EXPECT_NE(program.Wait(), 0);
        return text;
    };
    EXPECT_EQ(output({"--certificate", garbage}), "demo-server: " + garbage + " holds no certificate\n");
    EXPECT_EQ(output({"--client-ca", garbage}), "demo-server: " + garbage + " holds no certificate\n");
    EXPECT_THAT(output({"--certificate", "none.pem"}), HasSubstr("--certificate: File does not exist: none.pem"));
    EXPECT_THAT(output({"--key", garbage}), HasSubstr("--key requires --certificate"));
}

TEST(Program, MayHaveAsManyDescriptorsAsItIsAllowed) {
    const std::string address = support::LoopbackAddress();
    const Program program({"-c", std::string("ulimit -Sn 64; exec ") + DEMO_SERVER_PROGRAM + " --address " + address},
                          "/bin/sh");
    program.ReadLine();
    program.ReadLine();
    std::vector<std::unique_ptr<exchange::Session>> idle;
    for (int i = 0; i < 100; ++i) {
        idle.push_back(std::make_unique<exchange::Session>());
    }
    EXPECT_EQ(exchange::Send(Request()).status, 200);
}

TEST(Program, LogsToItsOutput) {
    Program program({"--address", support::LoopbackAddress(), "--log", "-"});
    program.ReadLine();
    program.ReadLine();
    exchange::Send(Request());
    EXPECT_THAT(program.ReadLine(), HasSubstr(" - EnumerateClassNames - 200 0 "));
}

TEST(Program, EndsWithTheLineNumberOfAMalformedUser) {
    const support::TemporaryDirectory directory;
    const std::string users = directory.WriteFile("users", "a:b\nnobody\n");
    Program program({"--address", support::LoopbackAddress(), "--users", users});
    EXPECT_EQ(program.ReadAll(), "demo-server: " + users + ":2: no colon; a line must be name:password\n");
    EXPECT_EQ(program.Wait(), 1);
}

TEST(Program, EndsWithALineForEachProblemOfASchema) {
    const support::TemporaryDirectory directory;
    const std::string own = directory.WriteFile("own.xml", "<CIM><DECLARATION><DECLGROUP><VALUE.OBJECT>\n"
                                                           "<CLASS NAME='A' SUPERCLASS='B'/>\n<CLASS NAME='A'/>\n"
                                                           "</VALUE.OBJECT></DECLGROUP></DECLARATION></CIM>");
    Program program({"--address", support::LoopbackAddress(), "--schema", EXAMPLE_SCHEMA, "--schema", own});
    EXPECT_EQ(program.ReadAll(), "demo-server: " + own + ":3: schema: class A is declared twice, first at " + own +
                                     ":2\ndemo-server: " + own + ":2: class A: superclass B is not declared\n");
    EXPECT_EQ(program.Wait(), 1);
}

TEST(Program, ServesNamespacesWithTheirSchemas) {
    const support::TemporaryDirectory directory;
    const std::string more = directory.WriteFile(
        "more=1.xml", "<CIM><DECLARATION><DECLGROUP><VALUE.OBJECT><CLASS NAME='MORE_Rack' SUPERCLASS='EXAMPLE_Rack'/>"
                      "</VALUE.OBJECT></DECLGROUP></DECLARATION></CIM>");
    const std::string address = support::LoopbackAddress();
    const Program program({"--address", address, "--namespace", std::string("root/site=") + EXAMPLE_NAMESPACE,
                           "--namespace", "Root/Site=" + more, "--interop", "root/interop"});
    program.ReadLine();
    program.ReadLine();
    const auto ask = [](const std::string& nameSpace, const std::string& method, const std::string& parameters) {
        auto headers = exchange::OperationHeaders(method);
        headers["CIMObject"] = nameSpace;
        return exchange::Send(exchange::Post(headers, exchange::OperationBody(method, parameters, nameSpace))).body;
    };
    EXPECT_THAT(ask("root/site", "EnumerateInstances", exchange::ClassName("EXAMPLE_Rack")), HasSubstr(">cellar<"));
    EXPECT_THAT(ask("root/site", "EnumerateClassNames", exchange::ClassName("EXAMPLE_Rack")), HasSubstr("MORE_Rack"));
    EXPECT_THAT(ask("root/interop", "EnumerateInstances", exchange::ClassName("CIM_Namespace")),
                HasSubstr("<VALUE>root/site</VALUE>"));
}

TEST(Program, EndsWithOneLineWhenANamespaceCannotBeServed) {
    const auto problem = [](const std::vector<std::string>& arguments) {
        std::vector<std::string> all{"--address", support::LoopbackAddress()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        Program program(all);
        const std::string text = program.ReadLine();
        EXPECT_NE(program.Wait(), 0);
        return text;
    };
    const std::string file = EXAMPLE_NAMESPACE;
    EXPECT_EQ(problem({"--namespace", "/root/site=" + file}),
              "demo-server: \"/root/site\" cannot be the name of a namespace; names look like root/example");
    EXPECT_EQ(problem({"--namespace", "root/site"}), "--namespace: root/site is not NAMESPACE=SCHEMA");
    EXPECT_EQ(problem({"--namespace", "=" + file}), "--namespace: =" + file + " is not NAMESPACE=SCHEMA");
    EXPECT_EQ(problem({"--namespace", "root/site=no.xml"}), "--namespace: File does not exist: no.xml");
    EXPECT_EQ(problem({"--interop", "root/cimv2"}),
              "demo-server: the Interop namespace cannot be root/cimv2, which shows this machine");
}

TEST(Program, ShownInTheDocumentationServesItsPumps) {
    const std::string address = support::LoopbackAddress();
    const Program program({address}, DOCUMENTED_SERVER);
    EXPECT_EQ(program.ReadLine(), "http://" + address + ":5988 ready");
    const auto pumps =
        exchange::Send(exchange::Post(exchange::OperationHeaders("EnumerateInstances"),
                                      exchange::OperationBody("EnumerateInstances", exchange::ClassName("MY_Pump"))));
    EXPECT_THAT(pumps.body, HasSubstr("<VALUE>1500</VALUE>"));
}

TEST(Program, WantsAPasswordForAUser) {
    ::unsetenv("DEMO_SERVER_PASSWORD");
    Program program({"--address", support::LoopbackAddress(), "--user", "a"});
    EXPECT_THAT(program.ReadAll(), HasSubstr("--user needs --password-file"));
    EXPECT_EQ(program.Wait(), 1);
}

} // namespace
