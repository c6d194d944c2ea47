#pragma once

#include "support/CimServer.h"
#include "support/FaultyServer.h"
#include "support/ProgramRun.h"
#include "support/ScriptedServer.h"
#include "support/TemporaryDirectory.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// Several servers with the class TEST_Fan, each on a port of its own, and named connections to them.
class Fleet {
  public:
    /// A server with these fans.
    support::CimServer& Add(const std::string& name, const std::vector<std::string>& fans);

    /// A server on whose port nothing listens.
    void AddDead(const std::string& name);

    /// A server with one fan whose answers go through a fault.
    void AddFaulty(const std::string& name, support::Fault fault);

    /// A server that does what the script says.
    void AddScripted(const std::string& name, support::ScriptedServer::Script script);

    /// A connection to a port of this process's address. `members` is JSON such as `,"user":"reader"`.
    void AddConnection(const std::string& name, std::uint16_t port, const std::string& members = {});

    void RemoveConnection(const std::string& name);

    /// Runs the program with these connections.
    support::ProgramRun Run(const std::vector<std::string>& arguments) const;

    /// The variable of the environment that leads to them.
    std::string Environment() const;

    std::string Path(const std::string& file) const { return (folder_.Path() / file).string(); }
    std::string WriteFile(const std::string& name, const std::string& content) const {
        return folder_.WriteFile(name, content);
    }

  private:
    void WriteConnections() const;

    support::TemporaryDirectory folder_;
    std::map<std::string, std::string> connections_; ///< JSON by name
    std::vector<std::unique_ptr<support::CimServer>> servers_;
    std::vector<std::unique_ptr<support::ScriptedServer>> scripted_;
};

/// The whole answer to a request of a server with one fan, `faulty`.
std::string FanAnswer(const std::string& request);

/// Lets a server answer with the class TEST_Fan and these instances.
void AnswerWithFans(support::CimServer& server, const std::vector<std::string>& fans);
