#pragma once

#include "server/CimService.h"
#include "support/ScriptedServer.h"

#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

/// A server that says of the second schema's classes and instances what the demo server says of them, but for the
/// answers to EnumerateInstances and EnumerateInstanceNames, which a test can change. It listens on port 5988 of this
/// process's address. Every operation may be called at any time; a change counts from the next request on.
class SchemaServer {
  public:
    /// What goes out instead of the body of an answer, and the length that its head tells.
    struct Sent {
        std::string body;
        std::size_t toldLength;
    };
    using Change = std::function<Sent(const std::string& body)>;

    SchemaServer();

    const std::string& Address() const { return server_.Address(); }

    /// From now on.
    void SetChange(Change change);

    /// The bodies of the answers that it changed, as they went out, since the last call.
    std::vector<std::string> TakeChanged();

    /// The answer as it is without a change. The message's ID is the test's own.
    std::string Answer(const std::string& method, const std::string& className, bool deep) const;

  private:
    void Serve(support::Connection& peer);
    Sent Changed(const std::string& method, const std::string& body);

    const demo::CimService service_;
    std::mutex mutex_;
    Change change_;
    std::vector<std::string> changed_;
    support::ScriptedServer server_;
};
