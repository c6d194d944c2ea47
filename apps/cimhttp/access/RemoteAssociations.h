#pragma once

#include "access/AssociationQuery.h"
#include "access/RelatedObjects.h"
#include "access/RemoteModel.h"

#include <memory>
#include <string>
#include <vector>

namespace NQORVYX20 {
class TCimHTTPNamespace;
} // namespace NQORVYX20

namespace cimhttp {

// How PluginAccess reads associations; its comments say more.

std::vector<NQORVYX20::TCIMReference> ReadRemoteRelatedPaths(NQORVYX20::TCimHTTPNamespace& nameSpace,
                                                             const AssociationQuery& query);

std::unique_ptr<RelatedObjects> ReadRemoteRelated(NQORVYX20::TCimHTTPNamespace& nameSpace,
                                                  const AssociationQuery& query);

void CheckRemoteInstance(NQORVYX20::TCimHTTPNamespace& nameSpace, const std::string& path);

std::vector<RemoteLink> ReadRemoteLinks(NQORVYX20::TCimHTTPNamespace& nameSpace, const std::string& path);

} // namespace cimhttp
