// Memory that does not suffice at any one point: the program says so and fails, or what it shows is whole.

#include "CimXml.h"
#include "Failure.h"
#include "Program.h"
#include "support/CimServer.h"
#include "support/LoopbackAddress.h"
#include "support/ProgramRun.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <new>
#include <sstream>
#include <string>
#include <vector>

using testing::HasSubstr;
using testing::Not;

namespace {

// The program and this test; what is allocated by other libraries for themselves is their own affair.
extern "C" const char __executable_start; // NOLINT(bugprone-reserved-identifier): the linker's
extern "C" const char etext;              // the linker's

std::atomic<bool> isCounting{false};
std::atomic<long> allocations{0};
std::atomic<long> failing{-1}; // which of them fails

bool IsOfTheProgram(const void* caller) {
    return std::greater_equal<>()(caller, static_cast<const void*>(&__executable_start)) &&
           std::less<>()(caller, static_cast<const void*>(&etext));
}

void* Allocate(std::size_t size, const void* caller) {
    if (isCounting && IsOfTheProgram(caller) && ++allocations == failing) {
        throw std::bad_alloc();
    }
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

} // namespace

void* operator new(std::size_t size) { return Allocate(size, __builtin_return_address(0)); }
void* operator new[](std::size_t size) { return Allocate(size, __builtin_return_address(0)); }
void* operator new(std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept {
    return std::malloc(size == 0 ? 1 : size); // those who ask so can do without
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr long kTries = 100; // for each command, spread over all its allocations

void Fill(support::CimServer& server) {
    const std::string declarations = DeclarationXml("Size", "uint64") + ArrayDeclarationXml("List", "string");
    const std::string values = PropertyXml("Size", "uint64", "7") + ArrayXml("List", "string", {"one", "two"});
    std::string instances;
    for (int i = 0; i < 20; ++i) {
        instances += InstanceXml("TEST_Disk", "a name of more than some characters " + std::to_string(i), values);
    }
    server.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_Disk\"/>");
    server.Answer("EnumerateClasses", "", ClassXml("TEST_Disk", "", declarations));
    server.Answer("EnumerateQualifiers", "", QualifierDeclarationXml("Key", "boolean"));
    server.Answer("GetClass", "TEST_Disk", ClassXml("TEST_Disk", "", declarations));
    server.Answer("EnumerateInstances", "TEST_Disk", instances);
    server.Answer("GetClass", "TEST_Tape", ClassXml("TEST_Tape", "", declarations));
    server.Answer("EnumerateInstances", "TEST_Tape", InstanceXml("TEST_Tape", "a", values));
    server.Answer("EnumerateInstanceNames", "TEST_Disk", PathXml("TEST_Disk", "a"));
    server.Answer("GetInstance", "TEST_Disk", BareInstanceXml("TEST_Disk", "a", values));
    server.Answer("GetInstance", "", BareInstanceXml("TEST_Disk", "a", values));
}

/// A server in a process of its own, so that none of its allocations is taken for one of the program's.
class ServerProcess {
  public:
    ServerProcess() : address_(support::LoopbackAddress()) {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe(ends.data()), 0);
        process_ = ::fork();
        if (process_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            support::CimServer server(address_);
            Fill(server);
            server.Listen(kHttpPort);
            EXPECT_EQ(::write(ends[1], "!", 1), 1);
            for (;;) {
                ::pause();
            }
        }
        ::close(ends[1]);
        char isThere = ' ';
        EXPECT_EQ(::read(ends[0], &isThere, 1), 1);
        ::close(ends[0]);
    }
    ~ServerProcess() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    const std::string& Address() const { return address_; }

  private:
    std::string address_;
    pid_t process_ = -1;
};

support::ProgramRun RunFailing(const std::vector<std::string>& arguments, long failingAllocation,
                               const char* plugin = CIMHTTP_PLUGIN) {
    std::vector<const char*> words{"cimhttp", "--plugin", plugin};
    for (const std::string& argument : arguments) {
        words.push_back(argument.c_str());
    }
    std::ostringstream output;
    std::ostringstream errors;
    allocations = 0;
    failing = failingAllocation;
    isCounting = true;
    const int status = cimhttp::RunProgram(static_cast<int>(words.size()), words.data(), output, errors);
    isCounting = false;
    return {status, output.str(), errors.str()};
}

} // namespace

TEST(OutOfMemory, IsSaidOrDoesNotMatter) {
    const ServerProcess server;
    const support::TemporaryDirectory folder;
    const std::string document =
        folder.WriteFile("requested.xml", "<vyx version=\"1\"><network address=\"" + server.Address() +
                                              "\"/><class name=\"TEST_Disk\"/><class name=\"TEST_Tape\"/></vyx>");
    const std::vector<std::vector<std::string>> commands{
        {"classes"},
        {"tree"},
        {"class", "TEST_Disk"},
        {"methods", "TEST_Disk", "-o", "csv"},
        {"qualifiers"},
        {"instances", "TEST_Disk"},
        {"instances", "TEST_Disk", "-o", "plain"},
        {"instances", "TEST_Disk", "-o", "json"},
        {"instances", "TEST_Disk", "-o", "csv"},
        {"instances", "TEST_Disk", "-o", "mof"},
        {"instances", "TEST_Disk", "--where", "Size=7", "--property", "Name"},
        {"instances", "TEST_Disk", "--where", "Size>=7", "--sort", "Size:desc", "--limit", "1", "--wide"},
        {"instances", "TEST_Disk", "--paths"},
        {"instances", "TEST_Disk", "--keys", "-o", "json"},
        {"count"},
        {"instance", "TEST_Disk", "--key", "Name=a"},
        {"instance", "TEST_Disk.Name=\"a\""},
        {"watch", "TEST_Disk", "--count", "0", "-o", "json"},
        {"collect", document},
    };
    for (auto command : commands) {
        command.insert(command.begin(), {"--host", server.Address()});
        RunFailing(command, 0, "/no/such/plugin");
        const long begin = allocations; // behind the reading of the command line, a library that ends the program then
        const auto whole = RunFailing(command, 0);
        ASSERT_EQ(whole.status, 0) << whole.errors;
        const long count = allocations;
        long said = 0;
        for (long i = 0; i < kTries; ++i) {
            const long number = begin + i * (count - begin) / kTries;
            SCOPED_TRACE(command[2] + ", allocation " + std::to_string(number) + " of " + std::to_string(count));
            const auto run = RunFailing(command, number);
            EXPECT_THAT(run.output, Not(HasSubstr("no instances")));
            if (run.status == 0) {
                EXPECT_EQ(command[2] == "watch" ? "" : run.output, command[2] == "watch" ? "" : whole.output);
            } else {
                EXPECT_THAT(run.errors, HasSubstr(std::string("cimhttp: ") + cimhttp::kTooLittleMemory + '\n'));
                // What was collected before is written.
                EXPECT_EQ(run.status, run.output.find("\"complete\":false") != std::string::npos
                                          ? cimhttp::Failure::kIncomplete
                                          : cimhttp::Failure::kOther);
                EXPECT_THAT(run.output, Not(HasSubstr("\"complete\":true")));
                ++said;
            }
        }
        EXPECT_GT(said, kTries / 2) << command[2];
    }
}

TEST(OutOfMemory, IsUnknownToAMonitoringSystem) {
    const ServerProcess server;
    const std::vector<std::string> command{"--host", server.Address(), "check", "TEST_Disk", "--warning", "Size=10"};
    RunFailing(command, 0, "/no/such/plugin");
    const long begin = allocations;
    const auto whole = RunFailing(command, 0);
    ASSERT_EQ(whole.status, 0) << whole.output;
    const long count = allocations;
    long said = 0;
    for (long i = 0; i < kTries; ++i) {
        const long number = begin + i * (count - begin) / kTries;
        SCOPED_TRACE("allocation " + std::to_string(number) + " of " + std::to_string(count));
        const auto run = RunFailing(command, number);
        if (run.status == 0) {
            EXPECT_EQ(run.output, whole.output);
        } else {
            EXPECT_EQ(run.status, 3);
            EXPECT_EQ(run.output.rfind("UNKNOWN - ", 0), 0U) << run.output;
            ++said;
        }
    }
    EXPECT_GT(said, kTries / 2);
}
