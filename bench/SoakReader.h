#pragma once

#include "SoakFaults.h"
#include "SoakServers.h"
#include "cimhttp/RemoteFailure.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace NQORVYX20 {
class TCimHTTPNamespace;
}

namespace bench {

/// What was read: how many things, and a number that changes when one of their names, values or texts does.
struct Digest {
    std::size_t count = 0;
    std::uint64_t sum = 0;

    bool operator==(const Digest& other) const { return count == other.count && sum == other.sum; }
    void Add(const std::string& text);
    void Add(const Digest& other);
};

/// Everything that the readers of a run have counted. Safe to use from several threads.
class SoakTally {
  public:
    static constexpr std::size_t kKinds = 14;

    void CountNamespace() { ++namespaces_; }
    void CountRead() { ++reads_; }
    void CountCheck() { ++checks_; }
    void Count(const NQORVYX20::RemoteFailure& failure) { ++failures_.at(static_cast<std::size_t>(failure.kind)); }

    /// A check that has failed. The first ones are printed.
    void CountWrong(const std::string& what);

    std::size_t Wrong() const { return wrong_; }
    void Print() const;

  private:
    std::atomic<std::size_t> namespaces_{0};
    std::atomic<std::size_t> reads_{0};
    std::atomic<std::size_t> checks_{0};
    std::atomic<std::size_t> wrong_{0};
    std::array<std::atomic<std::size_t>, kKinds> failures_{};
    mutable std::mutex mutex_;
};

/// Does with servers what hosts do: makes a namespace, connects it, reads this and that, drops it. Answers of servers
/// that are not lying are held against what is known of them.
class SoakReader {
  public:
    /// What a read should bring, by reading ("faithful" or "compatible") and what is read.
    using Known = std::map<std::string, Digest>;

    /// Reads all that is known from a server that is not lying. Throws std::runtime_error when that fails.
    static Known Learn(const SoakServer& server);

    SoakReader(const Known& known, SoakTally& tally, std::uint64_t seed)
        : known_(known), tally_(tally), generator_(seed) {}

    /// One namespace from begin to end, of one of the servers, with a pause behind each read.
    void Visit(const std::vector<SoakServer>& servers, std::chrono::milliseconds pause);

  private:
    void Read(NQORVYX20::TCimHTTPNamespace& nameSpace, const SoakServer& server, const std::string& reading,
              std::chrono::milliseconds pause);
    void Check(const SoakServer& server, const std::string& key, const std::optional<Digest>& read, bool isWhole);

    const Known& known_;
    SoakTally& tally_;
    Generator generator_;
};

} // namespace bench
