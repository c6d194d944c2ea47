#include "connection/Session.h"

#include "Failure.h"
#include "connection/OperationStatistics.h"
#include "connection/RemoteReason.h"
#include "host/ICIMNamespace.h"
#include "host/TVYXException.h"
#include "text/Names.h"
#include "waiting/Interrupt.h"

#include <utility>

namespace cimhttp {

using namespace NQORVYX20;

namespace {

boost::shared_ptr<ICIMNamespace> Allocate(const Plugin& plugin, const Connection& connection) {
    try {
        return plugin.AllocateNamespace(connection.Context());
    } catch (const TVYXException& exception) {
        if (exception.GetStatusCode().GetCode() != TVYXStatusCode::eTypeMismatch) {
            throw;
        }
        throw Failure(Failure::kUsage, "'" + connection.nameSpace + "' is not the name of a namespace");
    }
}

boost::shared_ptr<ICIMNamespace> Supervised(const boost::shared_ptr<ICIMNamespace>& nameSpace, const Plugin& plugin,
                                            const Connection& connection) {
    return connection.statistics || connection.deadline
               ? plugin.Access().Supervised(nameSpace, connection.statistics, connection.deadline)
               : nameSpace;
}

/// Connects a namespace of the plug-in; with `wait`, that is how it waits for the server.
void Connect(ICIMNamespace& nameSpace, const Plugin& plugin, const Connection& connection,
             const std::optional<ProgressWait>& wait) {
    const FailureTeller failures(plugin.Access(), connection);
    const auto begin = std::chrono::steady_clock::now();
    const auto connect = [&] {
        plugin.Access().Connect(nameSpace, connection.host, connection.user, connection.password, connection.Port());
    };
    try {
        if (wait) { // the plug-in has no time-out for connecting; the user has one
            wait->Run("connecting to " + connection.Url(), connect,
                      ProgressWait::Limit{connection.ConnectTimeout(), [&] { return failures.ConnectTimedOut(); }});
        } else {
            connect();
        }
    } catch (const TVYXException& exception) {
        // the client library may be the first to notice that the time is over
        const bool isLate = std::chrono::steady_clock::now() - begin >= connection.ConnectTimeout();
        throw isLate ? failures.ConnectTimedOut() : failures.NotConnected(failures.ReasonOf(exception, nameSpace));
    }
}

} // namespace

Session::Session(const Plugin& plugin, const Connection& connection, const ProgressWait& wait)
    : plugin_(plugin),
      connection_(connection),
      wait_(wait.IsDirect() ? std::nullopt : std::optional(wait)),
      connected_(Allocate(plugin_, connection_)),
      namespace_(Supervised(connected_, plugin_, connection_)) {
    Connect(*namespace_, plugin_, connection_, wait_);
}

Session Session::WithoutProgress() const {
    Session session = *this;
    session.wait_.reset();
    return session;
}

ICIMNamespace& Session::NamespaceNamed(const std::string& name) {
    if (name.empty() || IsSameName(name, connection_.nameSpace)) {
        return *namespace_;
    }
    const auto known = others_.find(name);
    if (known != others_.end()) {
        return *known->second;
    }
    Connection other = connection_;
    other.nameSpace = name;
    const auto opened = Supervised(Allocate(plugin_, other), plugin_, other);
    Connect(*opened, plugin_, other, wait_);
    return *others_.emplace(name, opened).first->second;
}

void Session::SetDeadline(std::chrono::steady_clock::time_point deadline) {
    connection_.deadline = deadline;
    others_.clear();
    namespace_.reset(); // a namespace is supervised once at a time
    namespace_ = Supervised(connected_, plugin_, connection_);
    Access().RenewTime(*namespace_, connection_.TimeLeft());
}

void Session::LimitTime() const {
    if (connection_.deadline) {
        Access().SetTimeLeft(*namespace_, connection_.TimeLeft());
        for (const auto& [name, other] : others_) {
            Access().SetTimeLeft(*other, connection_.TimeLeft());
        }
    }
}

void Session::EndIfInterrupted(const std::function<void()>& stop) const {
    if (wait_ && Interrupted()) {
        stop();
        wait_->End();
    }
}

Session::Trial Session::Try(const std::string& thing,
                            const std::function<void(const PluginAccess&, ICIMNamespace&)>& ask) const {
    const auto begin = std::chrono::steady_clock::now();
    const auto elapsed = [&] {
        return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);
    };
    try {
        Awaited(thing, [&] {
            ask(Access(), *namespace_);
            return true;
        });
        return {elapsed(), std::nullopt};
    } catch (const RemoteError& error) {
        if (RemoteReason(error.Failure(), connection_).Status() == Failure::kConnection) {
            Failures().Fail(thing + " cannot be read from " + Server(), error.Failure());
        }
        return {elapsed(), error.Failure()};
    }
}

IncidentTally Session::TakeIncidents() {
    IncidentTally incidents;
    incidents.Add(Access().TakeIncidents(*namespace_));
    for (const auto& [name, other] : others_) {
        incidents.Add(Access().TakeIncidents(*other));
    }
    return incidents;
}

} // namespace cimhttp
