#pragma once

#include "connection/TlsSettings.h"

#include <functional>
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
    std::optional<int> port = {};
    std::optional<std::string> nameSpace = {};
    TlsSettings tlsSettings = {};

    /// The server as a URL.
    std::string Url() const;
};

/// Throws Failure(kUsage) unless the name needs no quoting in a shell and does not look like an option.
void CheckConnectionName(const std::string& name);

/// The user's named connections. They are a JSON document in one file, which only its owner reads:
///
///     {"lab": {"host": "server.example", "tls": true, "user": "reader"}}
class ConnectionStore {
  public:
    using Connections = std::map<std::string, SavedConnection>;

    /// `connections.json` in the user's folder, see UserDocument. Nothing where there is no such folder.
    static std::optional<ConnectionStore> OfUser();

    /// OfUser() for those who cannot do without. Throws Failure(kUsage) where there is none.
    static ConnectionStore NeededOfUser();

    explicit ConnectionStore(std::string path) : path_(std::move(path)) {}

    const std::string& Path() const { return path_; }

    /// No connections where there is no file. Throws Failure(kUsage), naming the file, when it cannot be read, is not
    /// what it should be, or holds a password and can be read by others.
    Connections Read() const;

    /// Lets `change` change what Read() returns, and replaces the file; see UserDocument::Update.
    void Update(const std::function<void(Connections&)>& change) const;

    /// One connection by name. Throws like Read(), and Failure(kUsage) when there is none of that name.
    SavedConnection Find(const std::string& name) const;

  private:
    std::string path_;
};

} // namespace cimhttp
