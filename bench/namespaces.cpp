// Reads classes and instances through 64 namespaces, each of a server of its own, on a number of threads, and prints
// how long that took. The servers are demo servers in this process, on 64 addresses of the loopback network.

#include "Measurement.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMProperty.h"
#include "model/TCimHTTPProperty.h"
#include "provider/TCimHTTPNamespace.h"
#include "provider/TCimHTTPNamespaceProvider.h"
#include "server/DemoServer.h"

#include <boost/pointer_cast.hpp>

#include <atomic>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using namespace NQORVYX20;

namespace {

constexpr int kServers = 64;
constexpr int kMaxThreads = 64;
constexpr int kHttpPort = 5988;
constexpr std::size_t kVolumes = 200;
constexpr const char* kClasses[] = {"DEMO_StorageVolume", "DEMO_ComputerSystem", "DEMO_OperatingSystem",
                                    "DEMO_FileSystem"};

std::string AddressOf(const std::string& network, int server) { return network + '.' + std::to_string(server + 1); }

std::vector<std::unique_ptr<demo::DemoServer>> StartServers(const std::string& network) {
    std::vector<std::unique_ptr<demo::DemoServer>> servers;
    for (int i = 0; i < kServers; ++i) {
        demo::DemoServerOptions options;
        options.address = AddressOf(network, i);
        options.volumes = kVolumes;
        servers.push_back(std::make_unique<demo::DemoServer>(options));
    }
    return servers;
}

/// The length of all display texts of an instance.
std::size_t Show(ICIMInstance& instance) {
    std::size_t length = 0;
    instance.EnumerateProperties(
        [&](const boost::shared_ptr<ICIMProperty>& property) {
            const TCIMValue& value = property->GetValue(TCIMContext());
            length += TCimHTTPProperty(property->GetDeclaration(TCIMContext()), value).ToString().size();
            return true;
        },
        TCIMContext());
    return length;
}

/// Does with one server what a host would do: connects, reads a few classes with their instances, shows all values.
/// Returns the number of instances.
std::size_t ReadServer(const std::string& address) {
    const auto nameSpace =
        boost::dynamic_pointer_cast<TCimHTTPNamespace>(TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(
            {{"pluginNameQualDeclValue", TCIMValue("cimhttp")}}, false));
    nameSpace->connect(address, "", "", kHttpPort);
    std::size_t count = 0;
    for (const char* name : kClasses) {
        const auto cls = nameSpace->GetClass(name, TCIMContext());
        if (!cls) {
            throw std::runtime_error(address + " does not serve " + name);
        }
        cls->EnumerateInstances(
            [&](const boost::shared_ptr<ICIMInstance>& instance) {
                ++count;
                return Show(*instance) != 0;
            },
            false, TCIMContext());
    }
    nameSpace->disconnect();
    return count;
}

/// Hands the servers out to threads, and keeps what goes wrong on one of them for the thread that waits.
class Work {
  public:
    explicit Work(std::string network) : network_(std::move(network)) {}

    /// Returns the number of instances read.
    std::size_t Run(int threadCount) {
        std::vector<std::thread> threads;
        threads.reserve(static_cast<std::size_t>(threadCount));
        for (int i = 0; i < threadCount; ++i) {
            threads.emplace_back([this] { ReadServers(); });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        return count_;
    }

  private:
    void ReadServers() {
        try {
            for (int server = next_++; server < kServers; server = next_++) {
                count_ += ReadServer(AddressOf(network_, server));
            }
        } catch (...) {
            const std::lock_guard<std::mutex> lock(mutex_);
            failure_ = std::current_exception();
        }
    }

    const std::string network_;
    std::atomic<int> next_{0};
    std::atomic<std::size_t> count_{0};
    std::mutex mutex_;
    std::exception_ptr failure_;
};

} // namespace

int main(int argc, char** argv) {
    const int threadCount = argc == 3 ? std::atoi(argv[1]) : 0;
    if (threadCount < 1 || threadCount > kMaxThreads) {
        std::cerr << "use: namespaces THREADS NETWORK, 1 to " << kMaxThreads
                  << " threads and the first three numbers of the servers' addresses, as in 127.80.1\n";
        return 2;
    }
    try {
        const auto servers = StartServers(argv[2]);
        const bench::Stopwatch stopwatch;
        const std::size_t count = Work(argv[2]).Run(threadCount);
        const double seconds = stopwatch.Seconds();
        bench::PrintTime(seconds);
        bench::PrintCount(count);
        bench::PrintPeakMemory();
    } catch (const std::exception& exception) {
        std::cerr << "namespaces: " << exception.what() << '\n';
        return 1;
    }
    return 0;
}
