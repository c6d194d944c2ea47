// Reads through the plug-in for a long time, on several threads, from servers that come, go, lie and stall, and finds
// out whether something is left behind or an answer is wrong. The script of the same name runs it.

#include "Measurement.h"
#include "SoakReader.h"
#include "SoakServers.h"
#include "host/ILogger.h"
#include "host/TRootObject.h"

#include <boost/make_shared.hpp>

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <exception>
#include <iostream>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kThreads = 8;
constexpr std::chrono::seconds kRound(60);
/// The first round, after which everything is there that is made once: caches, arenas, loaded libraries. Not counted.
constexpr std::chrono::seconds kWarmUp(45);
/// By how much resident memory may differ between begin and end: the allocator's arenas are never cut up the same.
/// The thread sanitizer keeps a history of its own.
#ifdef __SANITIZE_THREAD__
constexpr std::size_t kMemoryTolerance = std::size_t{256} * 1024;
#else
constexpr std::size_t kMemoryTolerance = std::size_t{8} * 1024;
#endif

/// The plug-in says much about such servers.
class SilentLog : public NQORVYX20::ILogger {
  public:
    void Log(EVYXLogSeverity /*severity*/, std::string /*message*/) override {}
};

struct Arguments {
    double minutes = 0;
    std::string network;
    std::uint64_t seed = 0;
    std::chrono::milliseconds pause{0};
};

class Soak {
  public:
    explicit Soak(const Arguments& arguments)
        : arguments_(arguments), servers_(arguments.network, arguments.seed), known_(Learn()) {}

    /// Whether all is as it should be.
    bool Run() {
        bench::SoakTally warmUp;
        ReadFor(kWarmUp, warmUp);
        const bench::Usage begin = Report("begin", warmUp);
        bench::SoakTally tally;
        bench::Usage end = begin;
        const auto last = Clock::now() + std::chrono::duration<double>(arguments_.minutes * 60);
        while (Clock::now() < last) {
            ReadFor(std::min<Clock::duration>(kRound, std::chrono::duration_cast<Clock::duration>(last - Clock::now())),
                    tally);
            end = Report("after round " + std::to_string(round_ - 1), tally);
        }
        const bool isGood = Judge(begin, end, warmUp.Wrong() + tally.Wrong());
        const bool hasEndedWell = servers_.Stop();
        std::cout << (hasEndedWell ? "" : "the servers have not ended well\n");
        return isGood && hasEndedWell;
    }

  private:
    /// The servers' process begins before this one has threads.
    bench::SoakReader::Known Learn() const { return bench::SoakReader::Learn(servers_.All().front()); }

    void ReadFor(Clock::duration time, bench::SoakTally& tally) {
        const auto end = Clock::now() + time;
        std::vector<std::thread> threads;
        threads.reserve(kThreads);
        for (int i = 0; i < kThreads; ++i) {
            const auto seed = arguments_.seed + (round_ * kThreads + static_cast<std::uint64_t>(i)) * 1'000'003U;
            threads.emplace_back([this, seed, end, &tally] {
                bench::SoakReader reader(known_, tally, seed);
                while (Clock::now() < end) {
                    reader.Visit(servers_.All(), arguments_.pause);
                }
            });
        }
        for (auto& thread : threads) {
            thread.join();
        }
        ++round_;
    }

    bench::Usage Report(const std::string& when, const bench::SoakTally& tally) const {
        ::malloc_trim(0);
        const bench::Usage usage = bench::UsageOf("self");
        const bench::Usage servers = bench::UsageOf(servers_.Process());
        std::cout << when << ": resident " << usage.memory << " KiB, descriptors " << usage.descriptors << ", threads "
                  << usage.threads << " (servers: " << servers.memory << " KiB, " << servers.descriptors << ", "
                  << servers.threads << ")\n";
        tally.Print();
        return usage;
    }

    static bool Judge(const bench::Usage& begin, const bench::Usage& end, std::size_t wrong) {
        const bool keepsMemory = end.memory > begin.memory + kMemoryTolerance;
        const bool keepsDescriptors = end.descriptors > begin.descriptors;
        const bool keepsThreads = end.threads > begin.threads;
        std::cout << (keepsMemory ? "memory has grown\n" : "")
                  << (keepsDescriptors ? "descriptors are left open\n" : "")
                  << (keepsThreads ? "threads are left\n" : "") << (wrong > 0 ? "checks have failed\n" : "");
        return !keepsMemory && !keepsDescriptors && !keepsThreads && wrong == 0;
    }

    const Arguments arguments_;
    bench::SoakServers servers_;
    const bench::SoakReader::Known known_;
    std::uint64_t round_ = 0;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::cerr << "use: soak MINUTES NETWORK SEED PAUSE, the network being the first three numbers of the servers' "
                     "addresses, as in 127.80.1, and the pause that behind each read, in milliseconds\n";
        return 2;
    }
    try {
        const Arguments arguments{std::stod(argv[1]), argv[2], std::stoull(argv[3]),
                                  std::chrono::milliseconds(std::stoul(argv[4]))};
        NQORVYX20::TRootObject::SetCoreLogger(boost::make_shared<SilentLog>());
        const bool isGood = Soak(arguments).Run();
        std::cout << (isGood ? "good" : "NOT GOOD") << std::endl;
        return isGood ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "soak: " << error.what() << '\n';
        return 1;
    }
}
