// Reads the instances of a class, and the class many times, with the client library alone, and prints how fast that was
// and how much memory it took.

#include "Measurement.h"

#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Common/Exception.h>

#include <exception>
#include <iostream>
#include <stdexcept>

using namespace Pegasus;

namespace {

constexpr const char* kClassName = "ACME_StorageVolume";
constexpr Uint32 kPort = 5988;
constexpr int kGetClassCalls = 100;
constexpr Uint32 kTimeout = 120'000; // enough under callgrind, too

/// What is measured, under names that callgrind can be told to collect for.
[[gnu::noinline]] Array<CIMInstance> MeasuredEnumeration(CIMClient& client) {
    return client.enumerateInstances("root/cimv2", kClassName, true, false);
}
[[gnu::noinline]] CIMClass MeasuredGetClass(CIMClient& client) {
    return client.getClass("root/cimv2", kClassName, false);
}

void ReadInstances(CIMClient& client) {
    const bench::Stopwatch stopwatch;
    const Array<CIMInstance> instances = MeasuredEnumeration(client);
    const double seconds = stopwatch.Seconds();
    if (instances.size() == 0) {
        throw std::runtime_error("the server has no instances of the class");
    }
    bench::PrintInstances(instances.size(), seconds);
    bench::PrintPeakMemory();
}

void ReadClass(CIMClient& client) {
    const bench::Stopwatch stopwatch;
    for (int i = 0; i < kGetClassCalls; ++i) {
        MeasuredGetClass(client);
    }
    std::cout << "get_class_calls " << kGetClassCalls << "\nget_class_microseconds "
              << stopwatch.Seconds() * 1e6 / kGetClassCalls << '\n';
}

void Run(const char* address) {
    CIMClient client;
    client.setTimeout(kTimeout);
    client.connect(address, kPort, "", "");
    ReadInstances(client);
    ReadClass(client);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "use: client ADDRESS, of a server on port " << kPort << " that serves " << kClassName << '\n';
        return 2;
    }
    try {
        Run(argv[1]);
    } catch (const Exception& exception) {
        std::cerr << "client: " << exception.getMessage() << '\n';
        return 1;
    } catch (const std::exception& exception) {
        std::cerr << "client: " << exception.what() << '\n';
        return 1;
    }
    return 0;
}
