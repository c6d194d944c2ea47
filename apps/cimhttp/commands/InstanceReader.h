#pragma once

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <string>
#include <vector>

#include "access/TextForm.h"
#include "commands/InstanceQuery.h"
#include "connection/Session.h"

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
    /// Session::Class and InstanceQuery do.
    InstanceReader(const Session& session, const std::string& class_name, InstanceQuery query, bool deep,
                   TextForm form);

    std::string ClassName() const;

    /// What could not be taken from the answers since the last call.
    IncidentTally TakeIncidents() { return session_.TakeIncidents(); }

    /// Asks the server. Names of properties that could not be checked before are checked now.
    /// These are then all that any instance has.
    Reading Read();

  private:
    std::vector<std::string> NeededNames() const;

    Session session_;
    boost::shared_ptr<NQORVYX20::ICIMClass> class_;
    Properties declared_; // none by a server without operations on classes, which declares what it sends
    InstanceQuery query_;
    bool deep_;
    TextForm form_;
};

} // namespace cimhttp
