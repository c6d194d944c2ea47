// Reads the instances of a class, or the class many times, with the client library alone, and prints how fast that was
// and how much memory it took. It does nothing else, so the instructions of the whole process can be counted, too.

#include "Measurement.h"

#include <Pegasus/Client/CIMClient.h>
#include <Pegasus/Common/Exception.h>

#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Pegasus;

namespace {

constexpr const char* kNamespace = "root/cimv2";
constexpr const char* kClassName = "ACME_StorageVolume";
constexpr Uint32 kPort = 5988;
constexpr Uint32 kTimeout = 300'000; // enough under callgrind, too

void ReadInstances(CIMClient& client) {
    const bench::Stopwatch stopwatch;
    const Array<CIMInstance> instances = client.enumerateInstances(kNamespace, kClassName, true, false);
    const double seconds = stopwatch.Seconds();
    if (instances.size() == 0) {
        throw std::runtime_error("the server has no instances of the class");
    }
    bench::PrintInstances(instances.size(), seconds);
}

void ReadClass(CIMClient& client, int calls) {
    const bench::Stopwatch stopwatch;
    for (int i = 0; i < calls; ++i) {
        client.getClass(kNamespace, kClassName, false);
    }
    bench::PrintTime(stopwatch.Seconds());
}

using Arguments = std::vector<std::string>;

bool AsksForInstances(const Arguments& arguments) { return arguments.size() == 2 && arguments[1] == "instances"; }
bool AsksForClass(const Arguments& arguments) { return arguments.size() == 3 && arguments[1] == "class"; }

void Run(const Arguments& arguments) {
    CIMClient client;
    client.setTimeout(kTimeout);
    client.connect(String(arguments[0].c_str()), kPort, "", "");
    if (AsksForInstances(arguments)) {
        ReadInstances(client);
    } else {
        ReadClass(client, std::stoi(arguments[2]));
    }
    bench::PrintPeakMemory();
}

} // namespace

int main(int argc, char** argv) {
    const Arguments arguments(argv + 1, argv + argc);
    if (!AsksForInstances(arguments) && !AsksForClass(arguments)) {
        std::cerr
            << "use: client ADDRESS instances, or client ADDRESS class CALLS; the server of that address, on port "
            << kPort << ", serves " << kClassName << '\n';
        return 2;
    }
    try {
        Run(arguments);
    } catch (const Exception& exception) {
        std::cerr << "client: " << exception.getMessage() << '\n';
        return 1;
    } catch (const std::exception& exception) {
        std::cerr << "client: " << exception.what() << '\n';
        return 1;
    }
    return 0;
}
