// Which libraries a run of cimhttp loads, and when.

#include "ProgramRun.h"
#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"
#include "support/TemporaryDirectory.h"
#include "support/TerminalProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using testing::HasSubstr;
using testing::Not;

namespace {

namespace fs = std::filesystem;

constexpr const char* kTlsLibrary = "libcimhttp-client-tls.so";

demo::DemoServerOptions DemoOptions() {
    demo::DemoServerOptions options;
    options.address = support::LoopbackAddress();
    return options;
}

class LoadingTest : public testing::Test {
  protected:
    static std::vector<std::string> Arguments(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--host", support::LoopbackAddress()});
        return arguments;
    }

    /// What the dynamic linker says of the files that it loads.
    static std::string Loaded(const std::vector<std::string>& arguments) {
        const auto run = RunCimhttp(Arguments(arguments), {"LD_DEBUG=files"});
        EXPECT_EQ(run.status, 0);
        return run.errors;
    }

    /// Runs a copy of the program beside which one library is missing.
    static ProgramRun RunWithout(const std::string& library, const std::vector<std::string>& arguments) {
        const support::TemporaryDirectory folder;
        const fs::path program = fs::path(folder.Path()) / "bin" / "cimhttp";
        const fs::path libraries = fs::path(folder.Path()) / "lib" / "cimhttp";
        fs::create_directories(program.parent_path());
        fs::create_directories(libraries);
        fs::copy_file(CIMHTTP_PROGRAM, program);
        for (const auto& entry : fs::directory_iterator(fs::path(CIMHTTP_PLUGIN).parent_path())) {
            if (entry.path().filename() != library) {
                fs::create_symlink(entry.path(), libraries / entry.path().filename());
            }
        }
        return support::RunProgram(program, Arguments(arguments));
    }

  private:
    demo::DemoServer server_{DemoOptions()};
};

} // namespace

TEST_F(LoadingTest, PlainHttpGoesWithoutOpenSsl) {
    const std::string loaded = Loaded({"instances", "DEMO_FileSystem"});
    EXPECT_THAT(loaded, HasSubstr("libcimhttp-client.so.0"));
    EXPECT_THAT(loaded, Not(HasSubstr("libssl")));
    EXPECT_THAT(loaded, Not(HasSubstr("libcrypto")));
}

TEST_F(LoadingTest, ItsOwnLibrariesCountBeforeThoseOfLdLibraryPath) {
    const support::TemporaryDirectory folder;
    for (const auto& entry : fs::directory_iterator(fs::path(CIMHTTP_PLUGIN).parent_path())) {
        folder.WriteFile(entry.path().filename(), "no library");
    }
    const auto run =
        RunCimhttp(Arguments({"--tls", "classes", "DEMO_*"}), {"LD_LIBRARY_PATH=" + folder.Path().string()});
    EXPECT_EQ(run.status, 0) << run.errors;
}

TEST_F(LoadingTest, TlsLoadsOpenSslWhenItIsWanted) { EXPECT_THAT(Loaded({"--tls", "classes"}), HasSubstr("libssl")); }

TEST_F(LoadingTest, WithoutItsLibraryTlsFailsAndSaysSo) {
    const auto run = RunWithout(kTlsLibrary, {"--tls", "classes"});
    EXPECT_EQ(run.status, 3);
    EXPECT_THAT(run.errors, HasSubstr("there is no TLS: libcimhttp-client-tls.so: "));
}

TEST_F(LoadingTest, WithoutTheLibraryOfTlsPlainHttpWorks) { EXPECT_EQ(RunWithout(kTlsLibrary, {"classes"}).status, 0); }

TEST_F(LoadingTest, LookingAtAServerWithoutTlsGoesWithoutOpenSsl) {
    for (const char* const command : {"info", "doctor"}) {
        EXPECT_THAT(Loaded({command}), Not(HasSubstr("libssl"))) << command;
    }
}

TEST_F(LoadingTest, WithoutTheLibraryOfTlsInfoWorksOverPlainHttp) {
    EXPECT_EQ(RunWithout(kTlsLibrary, {"info"}).status, 0);
}

TEST_F(LoadingTest, OnlyTheLiveViewLoadsWhatDrawsOnTerminals) {
    EXPECT_THAT(Loaded({"watch", "DEMO_FileSystem", "--count", "0"}), Not(HasSubstr("ncurses")));
    EXPECT_EQ(RunWithout("libcimhttp-screen.so", {"top", "DEMO_FileSystem", "--count", "1"}).status, 0)
        << "without a terminal it is watch";
    support::TerminalProgram program(CIMHTTP_PROGRAM, Arguments({"top", "DEMO_FileSystem", "--count", "1"}),
                                     {"LD_DEBUG=files"});
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_THAT(program.Screen(), HasSubstr("libncursesw"));
}

TEST_F(LoadingTest, TheCertificateIsLookedAtByTheClientLibrary) {
    const std::string loaded = Loaded({"--tls", "info"});
    EXPECT_THAT(loaded, HasSubstr(kTlsLibrary));
    EXPECT_THAT(loaded, Not(HasSubstr("libcimhttp-tls.so")));
}
