#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

namespace cimhttp {

/// A server whose certificate the user trusts.
struct KnownServer {
    std::string fingerprint; ///< SHA-256 in the form of NormalFingerprint()
    std::string since;       ///< when the user trusted it (ISO 8601)
    std::string subject;     ///< of the certificate, for people
};

/// The servers that the user knows by their certificates, each under its name and port in lower case. They are a JSON
/// document in one file, which only its owner reads:
///
///     {"server.example:5989": {"sha256": "AB:…", "since": "2026-11-22T08:00:00+01:00", "subject": "CN=server"}}
class KnownServers {
  public:
    using Servers = std::map<std::string, KnownServer>;

    /// `known_servers.json` in the user's folder, see UserDocument. Nothing where there is no such folder.
    static std::optional<KnownServers> OfUser();

    explicit KnownServers(std::string path) : path_(std::move(path)) {}

    const std::string& Path() const { return path_; }

    /// All; none where there is no file. Throws Failure(kUsage), naming the file, when it cannot be read or is not what
    /// it should be: then no server counts as known, and none may be taken for unknown.
    Servers Read() const;

    /// The one at a host and port, `server.example:5989`, whatever the case. Throws like Read().
    std::optional<KnownServer> Find(const std::string& hostAndPort) const;

    /// Keeps one, in the place of what was known of this host and port. Throws like UserDocument::Update.
    void Keep(const std::string& hostAndPort, const KnownServer& server) const;

    /// False where there is none. Throws like UserDocument::Update.
    bool Forget(const std::string& hostAndPort) const;

  private:
    std::string path_;
};

} // namespace cimhttp
