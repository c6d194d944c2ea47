// The files that cimhttp reads and replaces, whatever stands in their places and whatever ends the program meanwhile.

#include "CimXml.h"
#include "Failure.h"
#include "ProgramRun.h"
#include "connection/ConnectionStore.h"
#include "files/InputFile.h"
#include "files/OutputFile.h"
#include "files/RemovalOnSignal.h"
#include "support/CimServer.h"
#include "support/TemporaryDirectory.h"
#include "waiting/Interrupt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <memory>
#include <ostream>

namespace fs = std::filesystem;
using cimhttp::ConnectionStore;
using cimhttp::Failure;
using cimhttp::InputFile;
using cimhttp::OutputFile;
using cimhttp::RemovalOnSignal;
using testing::EndsWith;
using testing::HasSubstr;
using testing::UnorderedElementsAreArray;

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr std::size_t kMegabyte = std::size_t{1} << 20U;

std::string ComplaintOf(const std::function<void()>& work) {
    try {
        work();
        return "none";
    } catch (const Failure& failure) {
        return failure.what();
    }
}

class FilesTest : public testing::Test {
  protected:
    std::string Path(const std::string& name) const { return (folder_.Path() / name).string(); }

    std::string Pipe() const {
        EXPECT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
        return Path("pipe");
    }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder_.Path())) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

    void ExpectOldFileAlone() const {
        EXPECT_EQ(ReadFile(Path("file")), "old");
        EXPECT_THAT(Names(), UnorderedElementsAreArray({"file"}));
    }

    support::TemporaryDirectory folder_;
};

/// Files of a program that reads a server that has a class and an instance of it.
class ServedFilesTest : public FilesTest {
  protected:
    ServedFilesTest() {
        server_.Listen(kHttpPort);
        server_.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"TEST_Disk\"/>");
        server_.Answer("GetClass", "TEST_Disk", ClassXml("TEST_Disk", ""));
        server_.Answer("EnumerateInstances", "TEST_Disk", InstanceXml("TEST_Disk", std::string(50000, 'x')));
    }

    std::string Document() const {
        return documents_.WriteFile("requested.xml", "<vyx version=\"1\"><network address=\"" + server_.Address() +
                                                         "\"/><class name=\"TEST_Disk\"/></vyx>");
    }

    /// Runs a command of the shell in which "$@" is the program with these arguments.
    static ProgramRun RunInShell(const std::string& command, const std::vector<std::string>& arguments) {
        std::vector<std::string> words{"-c", command, "sh", CIMHTTP_PROGRAM};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return support::RunProgram("/bin/sh", words);
    }

    support::CimServer server_;
    support::TemporaryDirectory documents_;
};

} // namespace

// --- Files that are replaced -------------------------------------------------------------------------------------

TEST_F(FilesTest, ASignalThatEndsTheProgramLeavesTheOldFileAlone) {
    testing::FLAGS_gtest_death_test_style = "fast"; // the same folder, and no other thread
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXCPU}) {
        folder_.WriteFile("file", "old");
        const auto replace = [&] {
            const rlimit noCore{0, 0};
            ::setrlimit(RLIMIT_CORE, &noCore);
            OutputFile(Path("file")).Replace([&](std::ostream& stream) {
                stream << "new" << std::flush;
                EXPECT_EQ(Names().size(), 2U);
                std::raise(signal);
            });
        };
        EXPECT_EXIT(replace(), testing::KilledBySignal(signal), "");
        ExpectOldFileAlone();
    }
}

TEST_F(FilesTest, ASignalLeavesNothingOfFilesThatAreReplacedAtTheSameTime) {
    testing::FLAGS_gtest_death_test_style = "fast"; // the same folder, and no other thread
    folder_.WriteFile("file", "old");
    const auto replace = [&] {
        OutputFile(Path("file")).Replace([&](std::ostream&) {
            OutputFile(Path("second")).Replace([&](std::ostream&) {
                EXPECT_EQ(Names().size(), 3U);
                OutputFile(Path("file")).Replace([](std::ostream& stream) { stream << "new"; });
                std::raise(SIGTERM);
            });
        });
    };
    EXPECT_EXIT(replace(), testing::KilledBySignal(SIGTERM), "");
    EXPECT_EQ(ReadFile(Path("file")), "new");
    EXPECT_THAT(Names(), UnorderedElementsAreArray({"file"}));
}

TEST_F(FilesTest, MoreFilesThanASignalRemovesAreReplacedNevertheless) {
    std::vector<std::unique_ptr<RemovalOnSignal>> others;
    for (std::size_t i = 0; i < RemovalOnSignal::kMostFiles + 1; ++i) {
        others.push_back(std::make_unique<RemovalOnSignal>(AT_FDCWD, "no such file"));
    }
    OutputFile(Path("file")).Replace([](std::ostream& stream) { stream << "old"; });
    ExpectOldFileAlone();
}

TEST_F(FilesTest, AnInterruptThatIsRememberedLetsTheFileBeFinishedAndTheSecondDoesNot) {
    testing::FLAGS_gtest_death_test_style = "fast"; // the same folder, and no other thread
    {
        const cimhttp::InterruptScope interrupts;
        OutputFile(Path("file")).Replace([&](std::ostream& stream) {
            std::raise(SIGINT);
            stream << "old";
        });
        EXPECT_TRUE(cimhttp::Interrupted());
    }
    ExpectOldFileAlone();
    const auto replace = [&] {
        const cimhttp::InterruptScope interrupts;
        OutputFile(Path("file")).Replace([&](std::ostream& stream) {
            stream << "new" << std::flush;
            std::raise(SIGTERM);
            std::raise(SIGTERM);
        });
    };
    EXPECT_EXIT(replace(), testing::KilledBySignal(SIGTERM), "");
    ExpectOldFileAlone();
    const auto replaceLater = [&] {
        const cimhttp::InterruptScope interrupts;
        OutputFile(Path("file")).Replace([&](std::ostream& stream) {
            std::raise(SIGTERM);
            stream << "old";
        });
        std::raise(SIGTERM);
    };
    EXPECT_EXIT(replaceLater(), testing::KilledBySignal(SIGTERM), "");
}

TEST_F(FilesTest, ASignalThatIsIgnoredStaysIgnored) {
    const auto before = std::signal(SIGHUP, SIG_IGN);
    OutputFile(Path("file")).Replace([&](std::ostream& stream) {
        std::raise(SIGHUP);
        stream << "old";
    });
    ExpectOldFileAlone();
    std::signal(SIGHUP, before);
}

TEST_F(FilesTest, AnExceptionLeavesTheOldFileAlone) {
    folder_.WriteFile("file", "old");
    const OutputFile file(Path("file"));
    EXPECT_THROW(file.Replace([](std::ostream& stream) {
        stream << "new" << std::flush;
        throw std::bad_alloc();
    }),
                 std::bad_alloc);
    ExpectOldFileAlone();
}

TEST_F(FilesTest, AFileStaysWhereItWasWhenItWasFound) {
    fs::create_directories(Path("folder"));
    fs::create_directories(Path("other"));
    fs::create_symlink("folder", Path("way"));
    folder_.WriteFile("folder/real", "old");
    folder_.WriteFile("other/real", "of others");
    fs::create_symlink("way/real", Path("link"));
    const OutputFile file(Path("link"));
    fs::remove(Path("link"));
    fs::create_symlink("other/real", Path("link"));
    fs::rename(Path("folder"), Path("moved"));
    fs::create_symlink("other", Path("folder"));
    file.Replace([](std::ostream& stream) { stream << "new"; });
    EXPECT_EQ(ReadFile(Path("moved/real")), "new");
    EXPECT_EQ(ReadFile(Path("other/real")), "of others");
}

TEST_F(FilesTest, ALinkThatTakesTheFilesPlaceIsNotFollowed) {
    folder_.WriteFile("secret", "of others");
    folder_.WriteFile("file", "old");
    const OutputFile file(Path("file"));
    fs::remove(Path("file"));
    fs::create_symlink("secret", Path("file"));
    file.Replace([](std::ostream& stream) { stream << "new"; });
    EXPECT_EQ(ReadFile(Path("secret")), "of others");
    EXPECT_FALSE(fs::is_symlink(Path("file")));
    EXPECT_EQ(ReadFile(Path("file")), "new");
}

TEST_F(ServedFilesTest, AFileThatGrowsTooLargeIsSaidAndTheOldOneStays) {
    folder_.WriteFile("file", "old");
    const auto run = RunInShell("ulimit -f 8; exec \"$@\"", {"collect", Document(), "--out", Path("file")});
    EXPECT_EQ(run.status, Failure::kOther);
    EXPECT_EQ(run.errors, "cimhttp: " + Path("file") + " cannot be written: File too large\n");
    ExpectOldFileAlone();
}

TEST_F(ServedFilesTest, ATemporaryFileThatGrowsTooLargeIsSaidAndTheOldFileStays) {
    server_.Answer("EnumerateInstances", "TEST_Disk", InstanceXml("TEST_Disk", std::string(100000, 'x')));
    folder_.WriteFile("file", "old");
    const auto run = RunInShell("ulimit -f 8; exec \"$@\"", {"collect", Document(), "--out", Path("file")});
    EXPECT_EQ(run.status, Failure::kOther);
    EXPECT_EQ(run.errors, "cimhttp: a temporary file cannot be written: File too large\n");
    ExpectOldFileAlone();
}

TEST_F(ServedFilesTest, AnOutputThatGrowsTooLargeIsSaid) {
    const auto run = RunInShell("ulimit -f 8; exec \"$@\" >" + Path("file"), {"collect", Document()});
    EXPECT_EQ(run.status, Failure::kOther);
    EXPECT_EQ(run.errors, "cimhttp: the output could not be written: File too large\n");
}

TEST_F(ServedFilesTest, AFullDiskIsSaid) {
    const auto out = RunInShell("exec \"$@\"", {"collect", Document(), "--out", "/dev/full"});
    EXPECT_EQ(out.status, Failure::kOther);
    EXPECT_EQ(out.errors, "cimhttp: /dev/full cannot be written: No space left on device\n");
    const std::vector<std::vector<std::string>> commands{
        {"info"},
        {"classes"},
        {"class", "TEST_Disk"},
        {"methods", "TEST_Disk"},
        {"instances", "TEST_Disk"},
        {"instances", "TEST_Disk", "-o", "json"},
        {"watch", "TEST_Disk", "--count", "0"},
        {"collect", Document()},
        {"--help"},
        {"--version"},
    };
    for (auto command : commands) {
        SCOPED_TRACE(command.front());
        command.insert(command.begin(), {"--host", server_.Address()});
        const auto run = RunInShell("exec \"$@\" >/dev/full", command);
        EXPECT_EQ(run.status, Failure::kOther);
        EXPECT_EQ(run.errors, "cimhttp: the output could not be written: No space left on device\n");
    }
}

TEST_F(ServedFilesTest, ConnectionsStayAsTheyWereWhereThereIsNoRoom) {
    const std::vector<std::string> environment{"XDG_CONFIG_HOME=" + folder_.Path().string()};
    EXPECT_EQ(RunCimhttp({"connection", "add", "a", "--host", "x"}, environment).status, 0);
    const std::string store = Path("cimhttp/connections.json");
    const std::string before = ReadFile(store);
    const std::string host(600, 'y'); // more than the one block that there is room for
    const std::vector<std::string> words{
        "-c", "ulimit -f 1; exec \"$@\"", "sh", CIMHTTP_PROGRAM, "connection", "add", "b", "--host", host};
    const auto run = support::RunProgram("/bin/sh", words, environment);
    EXPECT_EQ(run.status, Failure::kOther);
    EXPECT_EQ(run.errors, "cimhttp: " + store + " cannot be written: File too large\n");
    EXPECT_EQ(ReadFile(store), before);
    EXPECT_EQ(std::distance(fs::directory_iterator(Path("cimhttp")), fs::directory_iterator()), 2); // and the lock
}

// --- Files that are read -----------------------------------------------------------------------------------------

TEST_F(FilesTest, ReadingEndsAtALimit) {
    const InputFile file(folder_.WriteFile("file", std::string(2 * kMegabyte + 1, 'x')));
    EXPECT_EQ(ComplaintOf([&] { file.ReadAll(2 * kMegabyte); }),
              Path("file") + " cannot be read: it is larger than 2 MiB");
    EXPECT_EQ(ComplaintOf([] { InputFile("/dev/zero").ReadAll(kMegabyte); }),
              "/dev/zero cannot be read: it is larger than 1 MiB");
    EXPECT_EQ(ComplaintOf([] { InputFile("/dev/zero").ReadLine(100); }),
              "/dev/zero cannot be read: its first line is longer than 100 bytes");
    EXPECT_EQ(InputFile(Path("file")).ReadAll(2 * kMegabyte + 1).size(), 2 * kMegabyte + 1);
}

TEST_F(FilesTest, ALineMayBeAsLongAsItsLimit) {
    for (const char* content : {"1234", "1234\n", "1234\n5678901234567890"}) {
        EXPECT_EQ(InputFile(folder_.WriteFile("file", content)).ReadLine(4), "1234");
    }
    for (const char* content : {"12345", "12345\n"}) {
        EXPECT_THAT(ComplaintOf([&] { InputFile(folder_.WriteFile("file", content)).ReadLine(4); }),
                    EndsWith("longer than 4 bytes"));
    }
}

TEST_F(FilesTest, NobodyWaitsForeverForAPipe) {
    InputFile pipe(Pipe()); // to which nobody writes
    pipe.SetTimeout(std::chrono::milliseconds(1));
    EXPECT_EQ(ComplaintOf([&] { pipe.ReadLine(100); }), Path("pipe") + " cannot be read: nothing more comes from it");
}

TEST_F(FilesTest, APasswordFileThatIsTooLargeOrEndlessIsRefused) {
    const std::string huge = folder_.WriteFile("huge", std::string(5000, 'x'));
    for (const std::string& file : {huge, std::string("/dev/zero")}) {
        const auto run = RunCimhttp({"--user", "reader", "--password-file", file, "classes"});
        EXPECT_EQ(run.status, Failure::kUsage);
        EXPECT_EQ(run.errors,
                  "cimhttp: the password file " + file + " cannot be read: its first line is longer than 4096 bytes\n");
    }
}

TEST_F(ServedFilesTest, APasswordMayComeThroughAPipe) {
    server_.RequireUser("reader", "s3cret");
    const auto run = RunInShell("echo s3cret | \"$@\" --password-file /dev/stdin",
                                {"--host", server_.Address(), "--user", "reader", "classes"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
}

TEST_F(ServedFilesTest, APasswordMayComeFromStandardInput) {
    server_.RequireUser("reader", "s3cret");
    const std::vector<std::string> arguments{"--host", server_.Address(), "--user", "reader", "classes"};
    const auto run = RunInShell("echo s3cret | \"$@\" --password-file -", arguments);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    const auto second =
        RunInShell("{ echo guess; echo s3cret; } | { read first; \"$@\" --password-file -; }", arguments);
    EXPECT_EQ(second.status, 0) << "what another has read does not count";
    EXPECT_EQ(RunInShell("\"$@\" --password-file - </dev/null", arguments).errors,
              "cimhttp: standard input is empty\n");
}

TEST_F(ServedFilesTest, APasswordFileThatIsOpenToOthersIsUsedWithAWarning) {
    server_.RequireUser("reader", "s3cret");
    const std::string file = folder_.WriteFile("password", "s3cret\n");
    const auto run = [&](mode_t mode) {
        ::chmod(file.c_str(), mode);
        return RunCimhttp({"--host", server_.Address(), "--user", "reader", "--password-file", file, "classes"});
    };
    for (const mode_t mode : {0600U, 0400U, 0700U}) {
        EXPECT_EQ(run(mode).errors, "");
    }
    const std::vector<std::pair<mode_t, std::string>> openModes{
        {0640, "0640"}, {0604, "0604"}, {0620, "0620"}, {0602, "0602"}, {0644, "0644"}};
    for (const auto& [mode, text] : openModes) {
        const auto warned = run(mode);
        EXPECT_EQ(warned.status, 0);
        EXPECT_EQ(warned.output, "TEST_Disk\n");
        EXPECT_EQ(warned.errors, "cimhttp: the password file " + file + " is open to others (mode " + text +
                                     "): chmod 600 it, and think of changing the password\n");
    }
}

TEST_F(FilesTest, AStoreOfConnectionsIsAnOrdinaryFileOfModerateSize) {
    EXPECT_EQ(ComplaintOf([&] { ConnectionStore(Pipe()).Read(); }),
              Path("pipe") + " cannot be read: it is no ordinary file");
    EXPECT_EQ(ComplaintOf([] { ConnectionStore("/dev/zero").Read(); }),
              "/dev/zero cannot be read: it is no ordinary file");
    const std::string huge = folder_.WriteFile("huge", "{}" + std::string(kMegabyte, ' '));
    EXPECT_EQ(ComplaintOf([&] { ConnectionStore(huge).Read(); }), huge + " cannot be read: it is larger than 1 MiB");
    const std::string deep = folder_.WriteFile("deep", std::string(kMegabyte, '['));
    EXPECT_THAT(ComplaintOf([&] { ConnectionStore(deep).Read(); }), HasSubstr(deep + ": "));
}

TEST_F(FilesTest, ADocumentOfCollectIsReadToALimit) {
    const std::string huge = folder_.WriteFile("huge.xml", std::string(16 * kMegabyte + 1, ' '));
    fs::create_directories(Path("folder"));
    const std::vector<std::pair<std::string, std::string>> documents{
        {huge, "it is larger than 16 MiB"},
        {"/dev/zero", "it is larger than 16 MiB"},
        {Path("folder"), "Is a directory"},
        {Path("none"), "No such file or directory"},
    };
    for (const auto& [document, reason] : documents) {
        const auto run = RunCimhttp({"collect", document});
        EXPECT_EQ(run.status, Failure::kUsage);
        EXPECT_EQ(run.errors, "cimhttp: " + document + " cannot be read: " + reason + '\n');
    }
}

TEST_F(ServedFilesTest, ADocumentMayComeThroughAPipe) {
    const auto run = RunInShell("\"$@\" collect /dev/stdin <" + Document(), {});
    EXPECT_EQ(run.status, 0) << run.errors;
    const auto piped = RunInShell("cat " + Document() + " | \"$@\" collect /dev/stdin", {});
    EXPECT_EQ(piped.output, run.output);
}
