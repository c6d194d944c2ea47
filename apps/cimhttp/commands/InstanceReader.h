#pragma once

#include "cimhttp/DisplayTexts.h"
#include "commands/HeldInstances.h"
#include "commands/InstanceQuery.h"
#include "connection/Session.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace cimhttp {

/// Reads the instances of one class as a command line asks for them, as often as it is told to.
class InstanceReader {
  public:
    struct Reading {
        Properties properties; ///< to show: those of the class, or those of them that were asked for
        Instances instances;   ///< that meet the conditions, in the order that was asked for, or of their paths
        std::size_t count;     ///< how many there are with those that do not meet them
        UncomparedValues uncompared;
    };

    /// Reads the class, and checks the names of properties where it declares any. With `deep`, the instances of
    /// subclasses are wanted, too. Conditions compare texts in the `form` that they are shown in. Throws as
    /// ServerSchema::Class and InstanceQuery do.
    InstanceReader(const Session& session, const std::string& className, InstanceQuery query, bool deep,
                   NQORVYX20::DisplayForm form);

    std::string ClassName() const;

    /// What could not be taken from the answers since the last call.
    IncidentTally TakeIncidents() { return session_.TakeIncidents(); }

    /// Asks the server. Names of properties that could not be checked before are checked now, against all that any
    /// instance has.
    Reading Read();

    /// Whether it is known which properties are shown, and in which order, before there is any instance.
    bool CanStream() const { return !declared_.empty() && !query_.IsOrdered(); }

    /// The properties to show, where that is known.
    Properties Shown() const { return query_.Shown(declared_, ClassName()); }

    /// Does what Read() does without keeping the instances: `take` gets those that meet the conditions as they come.
    /// Those of a class that has more than are held come in the order of the server. The result has no instances.
    Reading Stream(const HeldInstances& held, const std::function<void(const Instances&)>& take);

  private:
    std::vector<std::string> NeededNames() const;

    Session session_;
    boost::shared_ptr<NQORVYX20::ICIMClass> class_;
    Properties declared_; // none by a server without operations on classes, which declares what it sends
    InstanceQuery query_;
    bool deep_;
    NQORVYX20::DisplayForm form_;
};

} // namespace cimhttp
