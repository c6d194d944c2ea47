#pragma once

#include "HostTypes.h"
#include "access/AssociationQuery.h"
#include "access/RemoteModel.h"
#include "connection/Session.h"
#include "host/TCIMReference.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace cimhttp {

/// Reads the associations of instances, which need not exist. Throws as Session says, and Failure(kUsage) for what is
/// no path or name.
class ServerAssociations {
  public:
    /// The session must outlive the object.
    explicit ServerAssociations(Session& session) : session_(session) {}

    /// What a query asks for, whose host is filled in: the objects, or their paths, in the server's order. The objects
    /// are valid as long as the session.
    std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>> Related(AssociationQuery query) const;
    std::vector<NQORVYX20::TCIMReference> RelatedPaths(AssociationQuery query) const;

    /// All associations of an instance.
    std::vector<RemoteLink> Links(const std::string& path) const;

  private:
    template <typename Operation>
    auto Reading(const AssociationQuery& query, const Operation& operation) const;

    [[noreturn]] void Fail(const AssociationQuery& query, const NQORVYX20::RemoteFailure& failure) const;

    Session& session_;
};

} // namespace cimhttp
