// A client on a machine that runs out of memory: every allocation of an operation fails once, wherever it stands.

#include "support/CimServer.h"
#include "support/FailingAllocations.h"

#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Client/FailureMarks.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace {

using namespace Pegasus;
using support::FailingAllocations;

constexpr std::size_t kEnough = 20000; // more than any of these operations allocates

std::string Instance(const std::string& name) {
    return "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"N\"><KEYVALUE>" + name +
           "</KEYVALUE></KEYBINDING><KEYBINDING NAME=\"R\"><VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"B\">"
           "<KEYBINDING NAME=\"K\"><KEYVALUE>a &quot;quoted&quot; value</KEYVALUE></KEYBINDING></INSTANCENAME>"
           "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"A\"><PROPERTY NAME=\"N\" "
           "TYPE=\"string\"><VALUE>" +
           name +
           "</VALUE></PROPERTY><PROPERTY.ARRAY NAME=\"L\" TYPE=\"uint16\"><VALUE.ARRAY><VALUE>1</VALUE><VALUE.NULL/>"
           "</VALUE.ARRAY></PROPERTY.ARRAY><PROPERTY NAME=\"E\" TYPE=\"string\" EmbeddedObject=\"instance\"><VALUE>"
           "&lt;INSTANCE CLASSNAME=\"C\"/&gt;</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>";
}

class ScarcityTest : public testing::Test {
  protected:
    ScarcityTest() {
        server_.Answer("EnumerateInstances", "A", Instance("one") + Instance("two") + Instance("three"));
        server_.Answer("EnumerateClassNames", "", "<CLASSNAME NAME=\"A\"/><CLASSNAME NAME=\"B\"/>");
        server_.Answer("GetClass", "A",
                       "<CLASS NAME=\"A\"><QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>a class of this "
                       "test</VALUE></QUALIFIER><PROPERTY NAME=\"N\" TYPE=\"string\"/></CLASS>");
        port_ = server_.Listen(0);
    }

    void Connect(CIMClient& client) { client.connect(address_, port_, user_, password_); }

    /// Runs `work` again and again, each time with another allocation that fails, until it finds none to fail.
    /// Returns how many it was.
    template <typename Work>
    std::size_t RunShortOfMemory(FailingAllocations::Fail fail, Work work) {
        for (std::size_t n = 0; n < kEnough; ++n) {
            if (!work(n, fail)) {
                return n;
            }
        }
        ADD_FAILURE() << "an operation without end";
        return 0;
    }

    // All that the operations are given is there before memory runs out.
    support::CimServer server_;
    std::uint16_t port_ = 0;
    const String address_{server_.Address()};
    const String user_ = "user";
    const String password_ = "password";
    const CIMNamespaceName nameSpace_{"root/cimv2"};
    const CIMName className_{"A"};
};

/// Does something while the n-th allocation fails. True when it ended in the exception for that, false when nothing had
/// to fail; nothing else may happen.
template <typename Work>
bool EndsForWantOfMemory(std::size_t n, FailingAllocations::Fail fail, Work work) {
    bool failed = false;
    bool struck = false;
    {
        const FailingAllocations scarcity(n, fail);
        try {
            work();
        } catch (const OutOfMemoryException& error) {
            failed = dynamic_cast<const ExceedsLimit*>(&error) != nullptr && !error.getMessage().empty();
        }
        struck = scarcity.HasStruck();
    }
    EXPECT_EQ(failed, struck) << "allocation " << n;
    return struck;
}

class EveryAllocation : public ScarcityTest, public testing::WithParamInterface<FailingAllocations::Fail> {};

TEST_P(EveryAllocation, OfConnectThatFailsIsToldAndLeavesNoConnection) {
    const std::size_t count = RunShortOfMemory(GetParam(), [&](std::size_t n, FailingAllocations::Fail fail) {
        CIMClient client;
        const bool failed = EndsForWantOfMemory(n, fail, [&] { Connect(client); });
        if (failed) {
            EXPECT_THROW(client.enumerateClassNames(nameSpace_), NotConnectedException);
        }
        return failed;
    });
    EXPECT_GT(count, 5U);
}

TEST_P(EveryAllocation, OfAnEnumerationThatFailsIsToldAndTheClientGoesOn) {
    CIMClient client;
    Connect(client);
    const std::size_t count = RunShortOfMemory(GetParam(), [&](std::size_t n, FailingAllocations::Fail fail) {
        Array<CIMInstance> instances;
        const bool failed = EndsForWantOfMemory(
            n, fail, [&] { instances = client.enumerateInstances(nameSpace_, className_, true, false); });
        EXPECT_EQ(instances.size(), failed ? 0U : 3U);
        return failed;
    });
    EXPECT_GT(count, 50U);
    EXPECT_EQ(client.enumerateInstances(nameSpace_, className_).size(), 3U);
}

TEST_P(EveryAllocation, OfAClassAndOfNamesThatFailsIsTold) {
    CIMClient client;
    Connect(client);
    RunShortOfMemory(GetParam(), [&](std::size_t n, FailingAllocations::Fail fail) {
        return EndsForWantOfMemory(n, fail, [&] { client.getClass(nameSpace_, className_, false); });
    });
    RunShortOfMemory(GetParam(), [&](std::size_t n, FailingAllocations::Fail fail) {
        return EndsForWantOfMemory(n, fail, [&] { client.enumerateClassNames(nameSpace_); });
    });
    EXPECT_EQ(client.enumerateClassNames(nameSpace_).size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(ScarcityTest, EveryAllocation,
                         testing::Values(FailingAllocations::Fail::kOne, FailingAllocations::Fail::kAllFromThere),
                         [](const auto& param) {
                             return param.param == FailingAllocations::Fail::kOne ? "One" : "AllFromThere";
                         });

} // namespace
