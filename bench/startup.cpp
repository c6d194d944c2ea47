// Loads the plug-in as a host does, allocates a namespace, and prints how much processor time that took.

#include "Measurement.h"
#include "host/ICIMNamespace.h"
#include "host/INamespaceProvider.h"
#include "host/INamespaceProviderManager.h"
#include "host/TCIMValue.h"
#include "host/TRootObject.h"

#include <dlfcn.h>

#include <ctime>
#include <exception>
#include <iostream>
#include <stdexcept>

using namespace NQORVYX20;

namespace {

/// The processor time of this process so far.
double ProcessorSeconds() {
    std::timespec time{};
    if (::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time) != 0) {
        throw std::runtime_error("the processor time cannot be read");
    }
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Under a name that callgrind can be told to collect for.
[[gnu::noinline]] boost::shared_ptr<ICIMNamespace> Measured(const char* library) {
    if (::dlopen(library, RTLD_NOW | RTLD_LOCAL) == nullptr) {
        throw std::runtime_error(::dlerror());
    }
    const auto provider = TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider("cimhttp");
    return provider->AllocateNamespace({{"pluginNameQualDeclValue", TCIMValue("cimhttp")}}, false);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "use: startup PLUGIN, the file of the library\n";
        return 2;
    }
    try {
        const double start = ProcessorSeconds();
        const auto nameSpace = Measured(argv[1]);
        bench::PrintTime(ProcessorSeconds() - start);
        bench::PrintCount(1);
        bench::PrintPeakMemory();
    } catch (const std::exception& exception) {
        std::cerr << "startup: " << exception.what() << '\n';
        return 1;
    }
    return 0;
}
