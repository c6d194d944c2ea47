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
constexpr Uint32 kPort = 5988;
constexpr Uint32 kTimeout = 300'000; // enough under callgrind, too

void ReadInstances(CIMClient& client, const CIMName& className) {
    const bench::Stopwatch stopwatch;
    const Array<CIMInstance> instances = client.enumerateInstances(kNamespace, className, true, false);
    const double seconds = stopwatch.Seconds();
    if (instances.size() == 0) {
        throw std::runtime_error("the server has no instances of the class");
    }
    bench::PrintInstances(instances.size(), seconds);
}

void ReadClass(CIMClient& client, const CIMName& className, int calls) {
    const bench::Stopwatch stopwatch;
    for (int i = 0; i < calls; ++i) {
        client.getClass(kNamespace, className, false);
    }
    bench::PrintTime(stopwatch.Seconds());
}

using Arguments = std::vector<std::string>;

bool AsksForInstances(const Arguments& arguments) { return arguments.size() == 3 && arguments[1] == "instances"; }
bool AsksForClass(const Arguments& arguments) { return arguments.size() == 4 && arguments[1] == "class"; }

void Run(const Arguments& arguments) {
    CIMClient client;
    client.setTimeout(kTimeout);
    client.connect(String(arguments[0].c_str()), kPort, "", "");
    const CIMName className(String(arguments[2].c_str()));
    if (AsksForInstances(arguments)) {
        ReadInstances(client, className);
    } else {
        ReadClass(client, className, std::stoi(arguments[3]));
    }
    bench::PrintPeakMemory();
}

} // namespace

int main(int argc, char** argv) {
    const Arguments arguments(argv + 1, argv + argc);
    if (!AsksForInstances(arguments) && !AsksForClass(arguments)) {
        std::cerr << "use: client ADDRESS instances CLASS, or client ADDRESS class CLASS CALLS, of the server on port "
                  << kPort << " of that address\n";
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
