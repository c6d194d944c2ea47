// A host may use the client on a thread with little stack.

#include "support/CimServer.h"
#include "support/NameService.h"

#include <Pegasus/Client/CIMClient.h>

#include <gtest/gtest.h>

#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <system_error>

namespace {

using namespace Pegasus;
using support::CimServer;
using support::TestCertificate;

constexpr std::size_t kKiB = 1024;

/// A thread's stack, below which nothing can be written, so that a thread that needs more crashes.
class SmallStack {
  public:
    explicit SmallStack(std::size_t size) : size_(size), guard_(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))) {
        void* const memory =
            ::mmap(nullptr, guard_ + size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED || ::mprotect(memory, guard_, PROT_NONE) != 0) {
            throw std::system_error(errno, std::generic_category(), "mmap");
        }
        memory_ = static_cast<unsigned char*>(memory);
        std::fill_n(bottom(), size_, kPaint);
    }
    ~SmallStack() { ::munmap(memory_, guard_ + size_); }
    SmallStack(const SmallStack&) = delete;
    SmallStack& operator=(const SmallStack&) = delete;

    /// Runs an action on a thread with this stack, to its end.
    void run(std::function<void()> action) {
        pthread_attr_t attributes;
        ::pthread_attr_init(&attributes);
        ASSERT_EQ(::pthread_attr_setstack(&attributes, bottom(), size_), 0);
        pthread_t thread{};
        ASSERT_EQ(::pthread_create(&thread, &attributes, &runAction, &action), 0);
        ::pthread_join(thread, nullptr);
        ::pthread_attr_destroy(&attributes);
    }

    /// How much of it has ever been written to, in KiB.
    std::size_t used() {
        const unsigned char* const end = bottom() + size_;
        const unsigned char* const deepest =
            std::find_if(bottom(), memory_ + guard_ + size_, [](unsigned char byte) { return byte != kPaint; });
        return static_cast<std::size_t>(end - deepest) / kKiB;
    }

  private:
    static constexpr unsigned char kPaint = 0xa5;

    static void* runAction(void* action) {
        (*static_cast<std::function<void()>*>(action))();
        return nullptr;
    }

    unsigned char* bottom() const { return memory_ + guard_; }

    const std::size_t size_;
    const std::size_t guard_;
    unsigned char* memory_ = nullptr;
};

class SmallStackTest : public ::testing::Test {
  protected:
    void SetUp() override {
#if defined(__SANITIZE_THREAD__)
        GTEST_SKIP() << "the thread sanitizer needs a megabyte of a stack for itself";
#endif
    }

    SmallStackTest() {
        std::string thing = "<CLASS NAME=\"CIM_Thing\">";
        for (int i = 0; i < 200; ++i) {
            thing +=
                "<PROPERTY NAME=\"P" + std::to_string(i) +
                "\" TYPE=\"string\"><QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>text</VALUE></QUALIFIER>"
                "</PROPERTY>";
        }
        server_.Answer("GetClass", "CIM_Thing", thing + "</CLASS>\n");
        server_.Fail("GetClass", "CIM_None", 6, "none");
        server_.SetFraming(CimServer::Framing::kChunked);
        server_.RequireUser("ada", "secret");
    }

    /// A good answer and an error, over a connection of a client's own.
    static void readClasses(CIMClient& client) {
        EXPECT_EQ(client.getClass("root/cimv2", "CIM_Thing").getPropertyCount(), 200U);
        EXPECT_THROW(client.getClass("root/cimv2", "CIM_None"), CIMException);
    }

    CimServer server_;
};

TEST_F(SmallStackTest, Of64KiBIsEnough) {
    const std::uint16_t port = server_.Listen(5988);
    support::NameService names; // a name is resolved elsewhere, whatever that takes
    names.Answer("server.test", {server_.Address()});
    SmallStack stack(64 * kKiB);
    stack.run([&] {
        CIMClient client;
        client.connect("server.test", port, "ada", "secret");
        readClasses(client);
        client.disconnect();
        EXPECT_THROW(client.connect(String(server_.Address()), 5989, "", ""), CannotConnectException);
    });
    RecordProperty("KiB", static_cast<int>(stack.used()));
}

TEST_F(SmallStackTest, Of128KiBIsEnoughForTls) {
    const TestCertificate certificate(TestCertificate::For(server_.Address()));
    const std::uint16_t port = server_.ListenTls(5989, certificate);
    const std::string address = server_.Address();
    SmallStack stack(128 * kKiB);
    stack.run([&] {
        CIMClient client;
        client.connect(String(address), port, SSLContext(String(certificate.CaFile()), nullptr), "ada", "secret");
        readClasses(client);
        client.disconnect();
        const SSLContext distrustful(String(), [](SSLCertificateInfo&) { return false; });
        EXPECT_THROW(client.connect(String(address), port, distrustful, "", ""), SSLException);
    });
    RecordProperty("KiB", static_cast<int>(stack.used()));
}

} // namespace
