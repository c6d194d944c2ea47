#pragma once

#include "Failure.h"
#include "access/RemoteModel.h"
#include "access/ServerProbe.h"
#include "connection/Connection.h"
#include "connection/Plugin.h"
#include "connection/Session.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace cimhttp {

struct Options;

/// The user has to be asked whether to trust a server, of which nothing but its certificate is known.
class TrustNeeded : public Failure {
  public:
    explicit TrustNeeded(TlsDetails shown)
        : Failure(kConnection, "nothing verifies the server yet, and its certificate is not trusted; nothing was sent"),
          shown_(std::move(shown)) {}

    const TlsDetails& Shown() const { return shown_; }

  private:
    TlsDetails shown_;
};

/// One server that pages show. Its connection is kept from question to question, and with it the definitions of its
/// classes. For several threads: one asks at a time, the others wait.
class BrowsedServer {
  public:
    /// `options` name the server, as those of a program that asks nobody. The plug-in must outlive the object.
    BrowsedServer(const Plugin& plugin, const Options& options);

    /// How to reach it. Throws Failure(kUsage) where that is not known.
    Connection Way() const;

    /// Lets `ask` ask the server over the kept connection, which is made where there is none. Throws what it throws,
    /// and TrustNeeded before anything is sent to a server that is not known.
    void Ask(const std::function<void(Session&)>& ask);

    /// A connection of its own.
    Session Connected() const;

    /// Trusts the server from now on if it shows the certificate with this fingerprint. Throws TrustNeeded if not.
    void Trust(const std::string& fingerprint);

    /// All classes, as the server told them when it was first asked, or with `isFresh` now. With Ask()'s session.
    const std::vector<RemoteClassName>& Classes(const Session& session, bool isFresh = false);

    /// The qualifiers that the server declares, likewise.
    const std::vector<RemoteQualifierDeclaration>& Qualifiers(const Session& session);

  private:
    Session Connect(const std::string& fingerprint) const;

    const Plugin& plugin_;
    const std::shared_ptr<const Options> options_;
    std::mutex mutex_;
    std::unique_ptr<Session> session_;
    std::vector<RemoteClassName> classes_;
    std::vector<RemoteQualifierDeclaration> qualifiers_;
    bool hasClasses_ = false;
    bool hasQualifiers_ = false;
};

} // namespace cimhttp
