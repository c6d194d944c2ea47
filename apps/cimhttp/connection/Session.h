#pragma once

#include "access/RemoteModel.h"
#include "connection/Connection.h"
#include "connection/FailureTeller.h"
#include "connection/IncidentTally.h"
#include "connection/Plugin.h"
#include "waiting/BackgroundTask.h"
#include "waiting/ProgressWait.h"

#include <boost/shared_ptr.hpp>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace cimhttp {

/// A connected server: its namespaces, and how to wait for its answers. ServerSchema, ServerInstances and
/// ServerAssociations read from it. What the plug-in reports by a status becomes a Failure there that names the server,
/// the thing asked for, the reason and what to try. Its status is kConnection, kAuthentication, kNotFound or kServer; a
/// ServerFailure has more to say, and a LoginFailure says that nothing else can be had either.
class Session {
  public:
    /// The outcome of asking for something.
    struct Trial {
        std::chrono::microseconds time;
        std::optional<NQORVYX20::RemoteFailure> failure;
    };

    /// Connects. Throws Failure(kConnection) when that fails, and Failure(kUsage) when the namespace is not the name of
    /// one. `wait` is how the session waits for the server.
    Session(const Plugin& plugin, const Connection& connection, const ProgressWait& wait);

    /// This session for another thread than the main one: it waits without showing progress or taking interrupts.
    Session WithoutProgress() const;

    const Plugin& LoadedPlugin() const { return plugin_; }

    const PluginAccess& Access() const { return plugin_.Access(); }

    const Connection& Target() const { return connection_; }

    /// The server as a URL.
    std::string Server() const { return connection_.Url(); }

    /// The server and, unless it is the usual one, the namespace.
    std::string Place() const { return connection_.Place(); }

    /// The name of the namespace that everything is read from.
    const std::string& NamespaceName() const { return connection_.nameSpace; }

    /// The namespace that everything is read from.
    NQORVYX20::ICIMNamespace& Namespace() const { return *namespace_; }

    /// That one if this is its name, or empty; otherwise another of the same server, opened when it is first needed.
    /// Throws as the constructor does.
    NQORVYX20::ICIMNamespace& NamespaceNamed(const std::string& name);

    /// What to throw when something goes wrong. Valid as long as the session.
    FailureTeller Failures() const { return {plugin_.Access(), connection_}; }

    /// Reads, and shows meanwhile that `thing` is being read. About `stop` see ProgressWait::Run.
    template <typename Operation>
    auto Awaited(const std::string& thing, const Operation& operation, const std::function<void()>& stop = {}) const {
        LimitTime();
        return wait_ ? wait_->Read("reading " + thing, operation, stop) : operation();
    }

    /// Whether operations are awaited while they run in a thread of their own, so that one may be begun ahead.
    bool CanReadAhead() const { return wait_.has_value(); }

    /// Leaves the next requests no more time than there is until the deadline. For the thread that asks.
    void LimitTime() const;

    /// Waits as Awaited() does for an operation that has been begun in a thread of its own, and throws what it throws;
    /// about `isEnough` see ProgressWait::Await. Until it has ended, nothing else may be asked.
    void Await(const std::string& thing, BackgroundTask& operation, const std::function<void()>& stop,
               const std::function<bool()>& isEnough) const {
        wait_->Await("reading " + thing, operation, {}, stop, isEnough);
    }

    /// Ends the program if an interrupt has come since, and calls `stop` before.
    void EndIfInterrupted(const std::function<void()>& stop) const;

    /// Asks for `thing` only to see how that goes. Throws Failure only when nothing can be asked at all.
    Trial Try(const std::string& thing,
              const std::function<void(const PluginAccess&, NQORVYX20::ICIMNamespace&)>& ask) const;

    /// All that is asked from now on must be answered until then, whatever deadline there was; and is counted where the
    /// connection's statistics are, as ever.
    void SetDeadline(std::chrono::steady_clock::time_point deadline);

    /// What could not be taken from the server's answers since the last call.
    IncidentTally TakeIncidents();

  private:
    Plugin plugin_;
    Connection connection_;
    std::optional<ProgressWait> wait_;
    boost::shared_ptr<NQORVYX20::ICIMNamespace> connected_;
    boost::shared_ptr<NQORVYX20::ICIMNamespace> namespace_; // that one, supervised as the connection says
    std::map<std::string, boost::shared_ptr<NQORVYX20::ICIMNamespace>> others_; // by name
};

} // namespace cimhttp
