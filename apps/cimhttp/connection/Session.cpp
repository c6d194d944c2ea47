#include "connection/Session.h"

#include "connection/NamespaceOpening.h"
#include "connection/RemoteReason.h"
#include "host/ICIMNamespace.h"
#include "text/Names.h"
#include "waiting/Interrupt.h"

namespace cimhttp {

using NQORVYX20::ICIMNamespace;

Session::Session(const Plugin& plugin, const Connection& connection, const ProgressWait& wait)
    : plugin_(plugin), connection_(connection), wait_(wait), namespace_(OpenNamespace(plugin_, connection_, wait_)) {}

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
    return *others_.emplace(name, OpenNamespace(plugin_, other, wait_)).first->second;
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
