#pragma once

#include "Options.h"
#include "browse/BrowsedServer.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace cimhttp {

/// The servers that pages show: the one that the command line names, and the user's named connections, which are looked
/// up each time. For several threads.
class BrowsedServers {
  public:
    /// A server as a list shows it, without its password.
    struct Listed {
        std::string name;
        std::string url;
        std::string nameSpace;
        std::string user; ///< empty for none
        bool hasPassword;
    };

    /// All must outlive the object.
    BrowsedServers(const Plugin& plugin, const Options& options) : plugin_(plugin), options_(options) {}

    /// The one of the command line first. Throws Failure(kUsage) where the connections cannot be read.
    std::vector<Listed> List() const;

    /// Throws Failure(kNotFound) where there is none of that name.
    std::shared_ptr<BrowsedServer> Find(const std::string& name);

    /// The name of the server that the command line names; empty for none.
    std::string NameOfFirst() const;

    /// What the user says of a server. Texts may be empty, but for the name and the host.
    struct NewServer {
        std::string name;
        std::string host; ///< see ServerName
        bool tls;
        std::string user;
        std::string password; ///< is kept in memory only, until the program ends
        std::string nameSpace;
    };

    /// Adds a named connection. Throws Failure(kUsage) for a name that there is, and for what is no name or no server.
    void Add(const NewServer& server);

    /// Uses this password for a server from now on, until the program ends.
    void SetPassword(const std::string& name, const std::string& password);

  private:
    Options OptionsFor(const std::string& name) const;
    bool IsFirst(const std::string& name) const { return options_.host && name == NameOfFirst(); }

    const Plugin& plugin_;
    const Options& options_;
    mutable std::mutex mutex_;
    std::map<std::string, std::string> passwords_; // that the user has typed, by the server's name
    std::map<std::string, std::shared_ptr<BrowsedServer>> servers_;
};

} // namespace cimhttp
