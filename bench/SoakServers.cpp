#include "SoakServers.h"

#include "SoakFaults.h"
#include "server/DemoServer.h"
#include "support/ScriptedServer.h"
#include "support/TestCertificate.h"

#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <list>
#include <memory>
#include <stdexcept>
#include <thread>
#include <utility>

namespace bench {

namespace {

constexpr std::uint16_t kHttpPort = 5988;
constexpr std::uint16_t kHttpsPort = 5989;
constexpr const char* kUser = "reader";
constexpr const char* kPassword = "s3cret";
/// How long a server that goes is there, and how long it is not.
constexpr std::chrono::milliseconds kPresence(1000);
constexpr std::chrono::milliseconds kAbsence(200);

// The last numbers of the addresses.
constexpr int kOpenServer = 1;
constexpr int kServerWithUser = 2;
constexpr int kPassingServer = 3;
constexpr std::array kLyingServers{11, 12, 13, 14};
constexpr int kServerWithoutTls = 15;

/// Whether the other process wants the servers to end; waits some time for it to say so.
class End {
  public:
    explicit End(int handle) : handle_(handle) {}

    bool IsThereWithin(std::chrono::milliseconds time) const {
        pollfd handle{handle_, POLLIN, 0};
        return ::poll(&handle, 1, static_cast<int>(time.count())) > 0;
    }

    void Wait() const {
        while (!IsThereWithin(std::chrono::hours(1))) {
        }
    }

  private:
    int handle_;
};

std::unique_ptr<demo::DemoServer> StartDemo(const std::string& address, bool withUser = false) {
    demo::DemoServerOptions options;
    options.address = address;
    options.volumes = SoakServers::kVolumes;
    if (withUser) {
        options.users.Add(kUser, kPassword);
    }
    return std::make_unique<demo::DemoServer>(options);
}

/// Makes servers that are there for a while, one after the other, on a thread of its own. What a server keeps of its
/// connections goes with it.
class PassingServers {
  public:
    /// Makes a server, of that number, which serves until it is deleted.
    using Start = std::function<std::shared_ptr<void>(std::size_t number)>;

    PassingServers(const End& end, Start start) : end_(end), start_(std::move(start)), thread_([this] { Run(); }) {}
    ~PassingServers() { thread_.join(); }
    PassingServers(const PassingServers&) = delete;
    PassingServers& operator=(const PassingServers&) = delete;

  private:
    void Run() const {
        for (std::size_t number = 0; !end_.IsThereWithin(kAbsence); ++number) {
            try {
                const auto server = start_(number);
                end_.IsThereWithin(kPresence);
            } catch (const std::exception& error) {
                std::cerr << "soak: a server does not come back: " << error.what() << '\n';
            }
        }
    }

    const End& end_;
    const Start start_;
    std::thread thread_;
};

Generator GeneratorOf(std::uint64_t seed, int server, std::size_t generation, std::size_t connection) {
    std::seed_seq numbers{seed, static_cast<std::uint64_t>(server), static_cast<std::uint64_t>(generation),
                          static_cast<std::uint64_t>(connection)};
    return Generator(numbers);
}

/// A server that lies on both ports.
std::shared_ptr<void> StartLiar(const std::string& network, int number, std::uint64_t seed, std::size_t generation,
                                const support::TestCertificate& certificate) {
    const auto script = [=](support::Connection& client) {
        auto generator = GeneratorOf(seed, number, generation, client.Index());
        ServeWithFaults(client, network + std::to_string(kOpenServer), generator);
    };
    auto server = std::make_shared<support::ScriptedServer>(script, network + std::to_string(number));
    server->Listen(kHttpPort);
    server->ListenTls(kHttpsPort, certificate);
    return server;
}

/// A server that does not speak TLS where it should, and has no other port.
std::shared_ptr<void> StartWithoutTls(const std::string& network, std::uint64_t seed, std::size_t generation) {
    const auto script = [=](support::Connection& client) {
        auto generator = GeneratorOf(seed, kServerWithoutTls, generation, client.Index());
        SendInsteadOfTls(client, generator);
    };
    auto server = std::make_shared<support::ScriptedServer>(script, network + std::to_string(kServerWithoutTls));
    server->Listen(kHttpsPort);
    return server;
}

/// The life of the other process.
void Serve(const std::string& network, std::uint64_t seed, int ready, const End& end) {
    rlimit descriptors{};
    ::getrlimit(RLIMIT_NOFILE, &descriptors);
    descriptors.rlim_cur = descriptors.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &descriptors);

    const auto open = StartDemo(network + std::to_string(kOpenServer));
    const auto withUser = StartDemo(network + std::to_string(kServerWithUser), true);
    const support::TestCertificate certificate(support::TestCertificate::For("localhost"));
    std::list<PassingServers> passing;
    passing.emplace_back(end, [&](std::size_t) { return StartDemo(network + std::to_string(kPassingServer)); });
    for (const int number : kLyingServers) {
        passing.emplace_back(end, [&, number](std::size_t generation) {
            return StartLiar(network, number, seed, generation, certificate);
        });
    }
    passing.emplace_back(end, [&](std::size_t generation) { return StartWithoutTls(network, seed, generation); });
    const char sign = '!';
    if (::write(ready, &sign, 1) == 1) {
        end.Wait();
    }
}

[[noreturn]] void ServeAndExit(const std::string& network, std::uint64_t seed, int ready, int end) {
    try {
        Serve(network, seed, ready, End(end));
    } catch (const std::exception& error) {
        std::cerr << "soak: the servers: " << error.what() << '\n';
        std::exit(EXIT_FAILURE);
    }
    std::exit(EXIT_SUCCESS); // and so the sanitizers have the last word
}

} // namespace

SoakServers::SoakServers(const std::string& network, std::uint64_t seed) {
    const std::string prefix = network + '.';
    for (const int port : {int(kHttpPort), int(kHttpsPort)}) {
        all_.push_back({prefix + std::to_string(kOpenServer), port, Manner::kTruthful});
        all_.push_back({prefix + std::to_string(kServerWithUser), port, Manner::kTruthful, kUser, kPassword});
        all_.push_back({prefix + std::to_string(kPassingServer), port, Manner::kPassing});
        for (const int number : kLyingServers) {
            all_.push_back({prefix + std::to_string(number), port, Manner::kLying});
        }
    }
    all_.push_back({prefix + std::to_string(kServerWithoutTls), kHttpsPort, Manner::kLying});
    std::array<int, 2> ready{};
    std::array<int, 2> end{};
    if (::pipe(ready.data()) != 0 || ::pipe(end.data()) != 0 || (process_ = ::fork()) < 0) {
        throw std::runtime_error("the process of the servers cannot be started");
    }
    if (process_ == 0) {
        ::close(ready[0]);
        ::close(end[1]);
        ServeAndExit(prefix, seed, ready[1], end[0]);
    }
    ::close(ready[1]);
    ::close(end[0]);
    end_ = end[1];
    char sign = 0;
    const bool isReady = ::read(ready[0], &sign, 1) == 1;
    ::close(ready[0]);
    if (!isReady) {
        throw std::runtime_error("the servers did not start");
    }
}

SoakServers::~SoakServers() { Stop(); }

bool SoakServers::Stop() {
    int status = -1;
    if (end_ >= 0) {
        ::close(std::exchange(end_, -1));
        ::waitpid(process_, &status, 0);
    }
    return status == 0;
}

} // namespace bench
