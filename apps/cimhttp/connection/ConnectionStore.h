#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

namespace cimhttp {

/// A connection that the user gave a name.
struct SavedConnection {
    std::string host;
    bool tls = false;
    std::optional<std::string> user;
    std::optional<std::string> password; ///< only where the user asked to store it
    std::optional<unsigned> timeout;     ///< in seconds
};

/// The user's named connections. They are a JSON document in one file, which only its owner reads:
///
///     {"lab": {"host": "server.example", "tls": true, "user": "reader"}}
class ConnectionStore {
  public:
    using Connections = std::map<std::string, SavedConnection>;

    /// `cimhttp/connections.json` in the user's folder for configuration: $XDG_CONFIG_HOME, or .config in $HOME.
    /// Nothing where neither is set.
    static std::optional<ConnectionStore> OfUser();

    explicit ConnectionStore(std::string path) : path_(std::move(path)) {}

    const std::string& Path() const { return path_; }

    /// No connections where there is no file. Throws Failure(kUsage), naming the file, when it cannot be read, is not
    /// what it should be, or holds a password and can be read by others.
    Connections Read() const;

    /// Replaces the file as a whole, by one that only its owner reads. Makes its folder where there is none. Throws
    /// Failure, naming the file, when that fails.
    void Write(const Connections& connections) const;

    /// One connection by name. Throws like Read(), and Failure(kUsage) when there is none of that name.
    SavedConnection Find(const std::string& name) const;

  private:
    std::string path_;
};

} // namespace cimhttp
