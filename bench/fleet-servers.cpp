// Many CIM servers in one process, with named connections to them:
//   fleet-servers NETWORK SERVERS INSTANCES FAILING FOLDER
// Each has an address of its own in a network such as 127.79, the usual port, and so many instances of BENCH_Item. Of
// every twenty servers, FAILING fail, up to four: two are dead, one sends a byte every second, one resets its
// connections. The connections, rack0001 and so on, are written to FOLDER/connections.json. The servers end with the
// standard input.

#include "NumberedItems.h"
#include "server/HttpListener.h"
#include "support/ScriptedServer.h"

#include <sys/resource.h>

#include <chrono>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <limits>
#include <list>
#include <sstream>
#include <string>
#include <thread>

namespace {

constexpr int kPort = 5988;
constexpr int kServersOfNet = 250;
constexpr int kGroup = 20;

// Which of twenty fail, and how; the first ones where not all do.
constexpr int kDead = 3;
constexpr int kSlow = 7;
constexpr int kAlsoDead = 11;
constexpr int kReset = 15;

void SendByteByByte(support::Connection& client) {
    client.ReadRequest();
    while (client.Write("H")) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
    }
}

void Reset(support::Connection& client) {
    client.ReadRequest();
    client.Reset();
}

/// The number of a server's kind; 0 for one that is well.
int KindOf(int server, int failing) {
    const int place = server % kGroup;
    const int rank = (place - kDead) / 4; // 0 to 3 for those that fail
    const bool isKind = place == kDead || place == kSlow || place == kAlsoDead || place == kReset;
    return isKind && rank < failing ? place : 0;
}

std::string AddressOf(const std::string& network, int server) {
    return network + '.' + std::to_string(1 + server / kServersOfNet) + '.' +
           std::to_string(1 + server % kServersOfNet);
}

std::string NameOf(int server) {
    std::ostringstream name;
    name << "rack" << std::setw(4) << std::setfill('0') << server;
    return name.str();
}

void RaiseDescriptorLimit() {
    rlimit descriptors{};
    ::getrlimit(RLIMIT_NOFILE, &descriptors);
    descriptors.rlim_cur = descriptors.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &descriptors);
}

void Serve(const std::string& network, int servers, std::uint64_t instances, int failing, const std::string& folder) {
    const demo::CimService service = bench::NumberedItems(instances);
    const demo::Users users;
    std::list<demo::HttpListener> well;
    std::list<support::ScriptedServer> others;
    std::ofstream connections(folder + "/connections.json");
    for (int i = 0; i < servers; ++i) {
        const std::string address = AddressOf(network, i);
        const int kind = KindOf(i, failing);
        if (kind == 0) {
            well.emplace_back(service, users, nullptr, address, kPort, nullptr);
        } else if (kind == kSlow || kind == kReset) {
            others.emplace_back(kind == kSlow ? SendByteByByte : Reset, address);
            others.back().Listen(kPort);
        }
        connections << (i == 0 ? "{" : ",") << '"' << NameOf(i) << R"(":{"host":")" << address << R"(","tls":false})"
                    << '\n';
    }
    connections << "}\n";
    connections.close();
    std::cout << "ready" << std::endl;
    std::cin.ignore(std::numeric_limits<std::streamsize>::max());
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 6) {
        std::cerr << "usage: fleet-servers NETWORK SERVERS INSTANCES FAILING FOLDER\n";
        return EXIT_FAILURE;
    }
    try {
        RaiseDescriptorLimit();
        Serve(argv[1], std::stoi(argv[2]), std::stoull(argv[3]), std::stoi(argv[4]), argv[5]);
    } catch (const std::exception& error) {
        std::cerr << "fleet-servers: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
