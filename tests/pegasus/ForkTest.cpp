// A host may fork while connections are open. The child has copies of the clients; whatever becomes of them, the
// connections of the parent work on.

#include "support/CimServer.h"

#include <Pegasus/Client/CIMClient.h>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

namespace {

bool isChild = false;

} // namespace

#if defined(__SANITIZE_ADDRESS__)
/// A child has none of the other threads, so what they hold would be taken for lost.
extern "C" int __lsan_is_turned_off() { return isChild ? 1 : 0; }
#endif

namespace {

using namespace Pegasus;
using support::CimServer;
using support::TestCertificate;

constexpr Uint32 kAmple = 30000; // milliseconds

const CIMNamespaceName kNamespace("root/cimv2");

/// Parameterised by whether the connection is encrypted.
class ForkTest : public ::testing::TestWithParam<bool> {
  protected:
    ForkTest() {
        server_.Answer("GetClass", "CIM_Thing", "<CLASS NAME=\"CIM_Thing\"></CLASS>\n");
        const String host(server_.Address());
        client_->setTimeout(kAmple);
        if (GetParam()) {
            const TestCertificate certificate(TestCertificate::For(server_.Address()));
            client_->connect(host, server_.ListenTls(5989, certificate), SSLContext(String(), nullptr), "", "");
        } else {
            client_->connect(host, server_.Listen(5988), "", "");
        }
    }

    CIMName getThing() { return client_->getClass(kNamespace, "CIM_Thing").getClassName(); }

    /// Forks, has the child do something, and waits for its end. The child must not return.
    static void inChild(const std::function<void()>& action) {
        const pid_t child = ::fork();
        if (child == 0) {
            isChild = true;
            action();
            ::_exit(EXIT_FAILURE);
        }
        int status = -1;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS) << status;
    }

    /// The connection goes on: no other one is opened.
    void expectThatTheConnectionWorks() {
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(getThing(), CIMName("CIM_Thing"));
        }
        EXPECT_EQ(server_.ConnectionCount(), 1U);
    }

    CimServer server_;
    std::unique_ptr<CIMClient> client_ = std::make_unique<CIMClient>();
};

TEST_P(ForkTest, ADestroyedCopyLeavesTheConnectionOfTheParentAsItIs) {
    getThing();
    inChild([&] {
        client_.reset();
        ::_exit(EXIT_SUCCESS);
    });
    expectThatTheConnectionWorks();
}

TEST_P(ForkTest, ACopyLeavesAConnectionThatWasNeverUsedAsItIs) {
    inChild([&] {
        client_.reset();
        ::_exit(EXIT_SUCCESS);
    });
    expectThatTheConnectionWorks();
}

TEST_P(ForkTest, ADisconnectedCopyLeavesTheConnectionOfTheParentAsItIs) {
    getThing();
    inChild([&] {
        client_->disconnect();
        ::_exit(EXIT_SUCCESS);
    });
    expectThatTheConnectionWorks();
}

TEST_P(ForkTest, AChildThatExitsWithAllItsDestructorsLeavesTheConnectionOfTheParentAsItIs) {
    getThing();
    inChild([&] {
        static const std::unique_ptr<CIMClient> last = std::move(client_); // goes when the process does
        std::exit(EXIT_SUCCESS);
    });
    expectThatTheConnectionWorks();
}

TEST_P(ForkTest, AChildThatIsStillThereDoesNotKeepTheConnectionOfTheParentFromEnding) {
    getThing();
    int gate[2];
    ASSERT_EQ(::pipe(gate), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(gate[1]);
        client_.reset();
        char byte = 0;
        static_cast<void>(!::read(gate[0], &byte, 1)); // until the parent has done
        ::_exit(EXIT_SUCCESS);
    }
    expectThatTheConnectionWorks();
    server_.AnswerNextWith("HTTP/1.1 500 No\r\n\r\n");
    EXPECT_THROW(getThing(), CIMClientHTTPErrorException);
    EXPECT_EQ(getThing(), CIMName("CIM_Thing")) << "over a new connection";
    ::close(gate[0]);
    ::close(gate[1]);
    ::waitpid(child, nullptr, 0);
}

INSTANTIATE_TEST_SUITE_P(Connections, ForkTest, ::testing::Bool(),
                         [](const auto& kind) { return kind.param ? "Tls" : "Plain"; });

} // namespace
