#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/// How a server of the soak test behaves.
enum class Manner {
    kTruthful, ///< is there all the time and answers rightly
    kPassing,  ///< answers rightly, but comes and goes
    kLying     ///< answers wrongly, late, in part or not at all, or comes and goes
};

struct SoakServer {
    std::string address;
    int port = 0; ///< 5988 for HTTP, 5989 for TLS
    Manner manner = Manner::kTruthful;
    std::string user = "";
    std::string password = "";
};

/// The servers of the soak test in a process of their own, so that the figures of this one are the plug-in's. The
/// process ends with the object, or with this process.
class SoakServers {
  public:
    /// How many storage volumes each server that is not lying has.
    static constexpr std::size_t kVolumes = 50;

    /// To be made before this process has threads. The network is the first three numbers of the servers' addresses.
    /// Returns when the servers can be asked. Throws std::runtime_error when they cannot be started.
    SoakServers(const std::string& network, std::uint64_t seed);
    ~SoakServers();
    SoakServers(const SoakServers&) = delete;
    SoakServers& operator=(const SoakServers&) = delete;

    /// Ends the process. Whether it ended well, which it does not when a sanitizer has found something in it.
    bool Stop();

    const std::vector<SoakServer>& All() const { return all_; }

    /// The number of the process.
    std::string Process() const { return std::to_string(process_); }

  private:
    std::vector<SoakServer> all_;
    pid_t process_ = -1;
    int end_ = -1;
};

} // namespace bench
