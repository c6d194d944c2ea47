// Memory may run out at any moment. Whichever allocation fails, the operation ends in an exception, nothing is lost,
// and the client works again when there is memory.

#include "support/CimServer.h"
#include "support/FailingAllocations.h"
#include "support/NameService.h"

#include <Pegasus/Client/CIMClient.h>

#include <gtest/gtest.h>

#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <new>
#include <optional>
#include <string>

namespace {

using namespace Pegasus;
using support::CimServer;
using support::TestCertificate;

constexpr std::uint16_t kPort = 5988;

/// The port that a descriptor's socket is bound to; nothing when it is no such socket.
std::optional<std::uint16_t> localPort(int descriptor) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    const bool found = ::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    return found ? std::optional<std::uint16_t>(ntohs(address.sin_port)) : std::nullopt;
}

/// The sockets of this process that are not the server's.
long clientSockets() {
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return std::count_if(begin(descriptors), end(descriptors), [](const auto& entry) {
        return localPort(std::stoi(entry.path().filename())).value_or(kPort) != kPort;
    });
}

Boolean acceptAll(SSLCertificateInfo&) { return true; }

enum class Way { kPlain, kByName, kTls, kTlsWithCallback };

class AllocationFailureTest : public ::testing::TestWithParam<Way> {
  protected:
    AllocationFailureTest() { names_.Answer("server.test", {support::LoopbackAddress()}); }

    bool isEncrypted() const { return GetParam() == Way::kTls || GetParam() == Way::kTlsWithCallback; }

    /// Another server each time, since one keeps all of its connections until its end.
    void serve(CimServer& server) const {
        server.Answer("GetClass", "CIM_Thing",
                      "<CLASS NAME=\"CIM_Thing\"><PROPERTY NAME=\"Size\" TYPE=\"uint32\"></PROPERTY></CLASS>\n");
        server.RequireUser("ada", "secret");
        if (isEncrypted()) {
            server.ListenTls(kPort, certificate_);
        } else {
            server.Listen(kPort);
        }
    }

    void connect(CIMClient& client) const {
        const char* const host = GetParam() == Way::kByName ? "server.test" : address_.c_str();
        if (isEncrypted()) {
            const SSLContext tls(String(certificate_.CaFile()),
                                 GetParam() == Way::kTlsWithCallback ? &acceptAll : nullptr);
            client.connect(host, kPort, tls, "ada", "secret");
        } else {
            client.connect(host, kPort, "ada", "secret");
        }
    }

    static void read(CIMClient& client) { client.getClass("root/cimv2", "CIM_Thing"); }

    /// Whether all of it succeeds although the allocation after the first `count` fails: there are not so many.
    bool succeedsWith(std::size_t count, CIMClient& client) const {
        const support::FailingAllocations scarcity(count);
        try {
            connect(client);
            read(client);
        } catch (const std::bad_alloc&) {
            return false; // of an argument
        } catch (const Exception&) {
            return false;
        }
        return true;
    }

    /// Whether the client can be used, connected or not.
    void expectUsable(CIMClient& client) const {
        try {
            read(client);
        } catch (const NotConnectedException&) {
            connect(client);
            read(client);
        }
    }

  private:
    const std::string address_ = support::LoopbackAddress();
    const TestCertificate certificate_{TestCertificate::For(address_)};
    support::NameService names_;
};

TEST_P(AllocationFailureTest, LosesNothingAndLeavesTheClientUsableWhicheverAllocationItIs) {
    bool succeeded = false;
    std::size_t count = 0;
    for (; !succeeded; ++count) {
        SCOPED_TRACE(count);
        CimServer server;
        serve(server);
        {
            CIMClient client;
            succeeded = succeedsWith(count, client);
            ASSERT_LE(clientSockets(), 1);
            ASSERT_NO_THROW(expectUsable(client));
            ASSERT_EQ(clientSockets(), 1);
        }
        ASSERT_EQ(clientSockets(), 0);
    }
    EXPECT_GT(count, 50U) << "there are allocations that can fail";
    RecordProperty("allocations", static_cast<int>(count));
}

std::string nameOf(const ::testing::TestParamInfo<Way>& way) {
    static const char* const names[] = {"Plain", "ByName", "Tls", "TlsWithCallback"};
    return names[static_cast<int>(way.param)];
}

INSTANTIATE_TEST_SUITE_P(Client, AllocationFailureTest,
                         ::testing::Values(Way::kPlain, Way::kByName, Way::kTls, Way::kTlsWithCallback), &nameOf);

} // namespace
