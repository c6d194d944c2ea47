#include "browse/BrowsedServer.h"

#include "Options.h"
#include "connection/ServerSchema.h"
#include "connection/ServerTrust.h"
#include "fleet/ServerLog.h"
#include "waiting/ProgressWait.h"

namespace cimhttp {

namespace {

/// Whether the failure is about the way to the server, so that another connection may be better.
bool EndsConnection(const Failure& failure) {
    return failure.Status() == Failure::kConnection || failure.Status() == Failure::kAuthentication;
}

} // namespace

BrowsedServer::BrowsedServer(const Plugin& plugin, const Options& options)
    : plugin_(plugin), options_(std::make_shared<const Options>(options)) {}

Connection BrowsedServer::Way() const { return ConnectionOf(*options_); }

void BrowsedServer::Ask(const std::function<void(Session&)>& ask) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const ServerLog::Scope scope(*options_->server);
    try {
        if (!session_) {
            session_ = std::make_unique<Session>(Connect({}));
        }
        ask(*session_);
    } catch (const Failure& failure) {
        if (EndsConnection(failure)) {
            session_.reset();
            hasClasses_ = hasQualifiers_ = false;
        }
        throw;
    }
}

Session BrowsedServer::Connected() const {
    const ServerLog::Scope scope(*options_->server);
    return Connect({});
}

void BrowsedServer::Trust(const std::string& fingerprint) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const ServerLog::Scope scope(*options_->server);
    session_ = std::make_unique<Session>(Connect(fingerprint));
}

/// A server that is not known is trusted if it shows this fingerprint; an empty one trusts none.
Session BrowsedServer::Connect(const std::string& fingerprint) const {
    const ProgressWait direct;
    const auto isTrusted = [&](const TlsDetails& shown) {
        if (fingerprint.empty() || shown.fingerprint != fingerprint) {
            throw TrustNeeded(shown);
        }
        return true;
    };
    return Session(plugin_, TrustedBy(isTrusted, plugin_, Way(), direct), direct);
}

const std::vector<RemoteClassName>& BrowsedServer::Classes(const Session& session, bool isFresh) {
    if (!hasClasses_ || isFresh) {
        classes_ = ServerSchema(session).Hierarchy();
        hasClasses_ = true;
    }
    return classes_;
}

const std::vector<RemoteQualifierDeclaration>& BrowsedServer::Qualifiers(const Session& session) {
    if (!hasQualifiers_) {
        qualifiers_ = ServerSchema(session).KnownQualifiers();
        hasQualifiers_ = true;
    }
    return qualifiers_;
}

} // namespace cimhttp
