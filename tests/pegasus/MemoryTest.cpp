// What an answer costs in memory: the objects that the caller keeps, whatever the length of the document.

#include "cimxml/ResponseDecoder.h"
#include "client/CimHeaders.h"
#include "http/HttpConnection.h"
#include "support/ScriptedServer.h"

#include <Pegasus/Client/CIMClient.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#if defined(__SANITIZE_ADDRESS__)
/// Freed memory is held back for a while where addresses are checked. That is not the library's, so little of it.
extern "C" const char* __asan_default_options() { return "quarantine_size_mb=1"; }
#endif

namespace {

using namespace Pegasus;
using namespace Pegasus::http;
using Pegasus::client::makeCimRequest;
using namespace std::chrono_literals;
using client::makeCimRequest;
using support::Connection;
using support::ScriptedServer;

constexpr std::size_t kMiB = std::size_t{1} << 20U;

/// A figure of /proc/self/status, in bytes.
std::size_t memory(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == name) {
            std::size_t kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    }
    ADD_FAILURE() << "no " << name;
    return 0;
}

std::size_t memoryNow() { return memory("VmRSS:"); }

/// The highest memoryNow() since the last call of forgetPeak(), or since the process began.
std::size_t peakMemory() { return memory("VmHWM:"); }
void forgetPeak() { std::ofstream("/proc/self/clear_refs") << 5; }

std::string instance(int number) {
    const std::string name = "instance " + std::to_string(number);
    return "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"CIM_Thing\"><KEYBINDING NAME=\"Name\"><KEYVALUE>" + name +
           "</KEYVALUE></KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"CIM_Thing\"><PROPERTY NAME=\"Name\" "
           "TYPE=\"string\"><VALUE>" +
           name +
           "</VALUE></PROPERTY><PROPERTY NAME=\"Size\" TYPE=\"uint64\"><VALUE>4096</VALUE></PROPERTY>"
           "<PROPERTY NAME=\"Caption\" TYPE=\"string\"><VALUE>" +
           std::string(200, 'x') + "</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE>\n";
}

/// About a mebibyte of instances.
std::string block() {
    std::string instances;
    for (int i = 0; instances.size() < kMiB; ++i) {
        instances += instance(i);
    }
    return instances;
}

/// Answers the first request, numbered 1, with so many blocks of instances, in chunks.
void sendInstances(Connection& peer, const std::string& block, int count) {
    const auto chunk = [](const std::string& bytes) {
        std::ostringstream text;
        text << std::hex << bytes.size() << "\r\n" << bytes << "\r\n";
        return text.str();
    };
    peer.ReadRequest();
    peer.Write("HTTP/1.1 200 OK\r\nCIMOperation: MethodResponse\r\nTransfer-Encoding: chunked\r\n\r\n");
    peer.Write(chunk("<CIM><MESSAGE ID=\"1\"><SIMPLERSP><IMETHODRESPONSE NAME=\"EnumerateInstances\"><IRETURNVALUE>"));
    const std::string instances = chunk(block);
    for (int i = 0; i < count && peer.Write(instances); ++i) {
    }
    peer.Write(chunk("</IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>"));
    peer.Write("0\r\n\r\n");
}

struct Counter : cimxml::ReturnValueSink {
    void onInstance(const CIMInstance&) override { ++count; }
    std::size_t count = 0;
};

TEST(Memory, DoesNotGrowWithAnAnswerOfWhichNothingIsKept) {
    constexpr int kBlocks = 500;
    const std::string instances = block();
    ScriptedServer server([&](Connection& peer) { sendInstances(peer, instances, kBlocks); });
    HttpConnection connection(Endpoint(server.Address(), server.Listen(5988)), std::nullopt, {});
    Counter counter;
    cimxml::ResponseDecoder decoder("1", "EnumerateInstances", counter);
    std::size_t size = 0;

    forgetPeak();
    const std::size_t before = memoryNow();
    const Deadline deadline(1h);
    connection.post(makeCimRequest("EnumerateInstances", "root/cimv2", "<CIM/>"), deadline);
    connection.readBody(
        [&](std::string_view part) {
            size += part.size();
            decoder.feed(part);
        },
        deadline);
    decoder.finish();
    const std::size_t peak = peakMemory();

    EXPECT_GT(size, kBlocks * kMiB);
    EXPECT_EQ(counter.count % kBlocks, 0U);
    EXPECT_GT(counter.count, 500'000U);
    EXPECT_LT(peak, before + 32 * kMiB);
}

TEST(Memory, OfAnEnumerationIsLittleMoreThanThatOfItsInstances) {
    const std::string instances = block();
    ScriptedServer server([&](Connection& peer) { sendInstances(peer, instances, 30); });
    CIMClient client;
    client.setTimeout(3'600'000);
    client.connect(String(server.Address()), server.Listen(5988), "", "");

    forgetPeak();
    const std::size_t before = memoryNow();
    const Array<CIMInstance> found = client.enumerateInstances(CIMNamespaceName("root/cimv2"), CIMName("CIM_Thing"));
    const std::size_t held = memoryNow();
    const std::size_t peak = peakMemory();

    EXPECT_GT(found.size(), 30'000U);
    EXPECT_GT(held, before + 10 * kMiB) << "the instances are there";
    EXPECT_LT(peak, held + 8 * kMiB);
}

} // namespace
