#pragma once

#include "HostTypes.h"
#include "access/InstanceSequence.h"
#include "connection/Session.h"
#include "host/TCIMReference.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace cimhttp {

/// An instance, and the namespace that it is in; empty for the one that everything else is read from.
struct FoundInstance {
    boost::shared_ptr<NQORVYX20::ICIMInstance> instance;
    std::string nameSpace;
};

/// Reads the instances of a server. Throws as Session says.
class ServerInstances {
  public:
    using Instances = std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>>;

    /// The session must outlive the object.
    explicit ServerInstances(Session& session) : session_(session) {}

    /// One instance by its object path, from the namespace that the path names. Throws Failure(kUsage) for what is no
    /// path; about its class it fails like ServerSchema::Class(). Valid as long as the session.
    FoundInstance At(const std::string& path) const;

    /// Throws Failure(kNotFound) where the server says that there is no such instance.
    void CheckExists(const std::string& path) const;

    /// The instances of a class, with `deep` those of its subclasses, too, in the order of their paths. The properties
    /// with these names are wanted, or all without names; the others are null. Asks the server each time.
    Instances Of(NQORVYX20::ICIMClass& cls, bool deep, const std::vector<std::string>& properties) const;

    /// Those of Of(), read on demand: no more than `held` are in memory. Those of a class that has more come in the
    /// server's order. The session must outlive it. Asks for nothing yet.
    std::unique_ptr<InstanceSequence> Open(NQORVYX20::ICIMClass& cls, bool deep,
                                           const std::vector<std::string>& properties, std::size_t held) const;

    /// The next of them; none at the end. An interrupt is passed on to the server before the program ends.
    Instances Next(InstanceSequence& instances, const std::string& className) const;

    /// Waits so for a task that asks for instances of the class, until that has ended or brought enough; `stop` passes
    /// an interrupt on.
    void Await(BackgroundTask& task, const std::string& className, const std::function<void()>& stop,
               const std::function<bool()>& isEnough) const;

    /// InstanceSequence::Settle(), which fails as Next() does.
    void Settle(InstanceSequence& instances, const std::string& className) const;

    /// The paths of the instances of a class and its subclasses, in the server's order. Fails like
    /// ServerSchema::Class().
    std::vector<NQORVYX20::TCIMReference> PathsOf(const std::string& className) const;

    /// The instances in a namespace of the server, with all properties of their own classes; or their paths. Throws
    /// RemoteError for an error that the server answers with, since another namespace may have them.
    Instances In(const std::string& nameSpace, const std::string& className) const;
    std::vector<NQORVYX20::TCIMReference> PathsIn(const std::string& nameSpace, const std::string& className) const;

  private:
    Session& session_;
};

} // namespace cimhttp
