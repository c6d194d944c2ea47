// Reads the instances of a class through the plug-in, and prints how fast that was and how much memory it took.

#include <boost/function.hpp>
#include <boost/pointer_cast.hpp>

#include <exception>
#include <iostream>
#include <stdexcept>

#include "Measurement.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMNamespace.h"
#include "provider/TCimHTTPNamespace.h"
#include "provider/TCimHTTPNamespaceProvider.h"

using namespace NQORVYX20;

namespace {

constexpr const char* kClassName = "ACME_StorageVolume";
constexpr int kPort = 5988;

using InstanceCallback = boost::function<bool(boost::shared_ptr<ICIMInstance>)>;

/// What is measured, under a name that callgrind can be told to collect for.
[[gnu::noinline]] void MeasuredEnumeration(ICIMClass& cls, const InstanceCallback& callback) {
    cls.EnumerateInstances(callback, false, TCIMContext());
}

void Run(const char* address) {
    const TCIMContext context{{"pluginNameQualDeclValue", TCIMValue("cimhttp")}};
    const auto nameSpace = boost::dynamic_pointer_cast<TCimHTTPNamespace>(
        TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(context, false));
    nameSpace->connect(address, "", "", kPort);
    const auto cls = nameSpace->GetClass(kClassName, TCIMContext());
    if (!cls) {
        throw std::runtime_error("the server does not serve the class");
    }

    std::size_t count = 0;
    const InstanceCallback countInstance = [&](const boost::shared_ptr<ICIMInstance>&) { return ++count != 0; };
    const bench::Stopwatch stopwatch;
    MeasuredEnumeration(*cls, countInstance);
    const double seconds = stopwatch.Seconds();
    if (count == 0) {
        throw std::runtime_error("the server has no instances of the class");
    }
    bench::PrintInstances(count, seconds);
    bench::PrintPeakMemory();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "use: enumerate ADDRESS, of a server on port " << kPort << " that serves " << kClassName << '\n';
        return 2;
    }
    try {
        Run(argv[1]);
    } catch (const std::exception& exception) {
        std::cerr << "enumerate: " << exception.what() << '\n';
        return 1;
    }
    return 0;
}
