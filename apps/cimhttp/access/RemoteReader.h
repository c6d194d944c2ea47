#pragma once

#include "HostTypes.h"
#include "access/InstanceSequence.h"
#include "access/RemoteModel.h"
#include "host/TCIMContext.h"

#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>
#include <vector>

namespace NQORVYX20 {
class TCimHTTPClass;
class TCimHTTPNamespace;
} // namespace NQORVYX20

namespace cimhttp {

// How PluginAccess reads; its comments say more.

std::vector<std::string> ReadRemoteClassNames(NQORVYX20::TCimHTTPNamespace& nameSpace);

std::vector<NQORVYX20::TCIMReference> ReadRemotePaths(NQORVYX20::TCimHTTPNamespace& nameSpace,
                                                      const std::string& className);

std::vector<NQORVYX20::TCIMReference> ReadRemotePathsIn(NQORVYX20::TCimHTTPNamespace& nameSpace,
                                                        const std::string& name, const std::string& className);

RemoteClass ReadRemoteClass(NQORVYX20::TCimHTTPNamespace& nameSpace, const std::string& name);

std::vector<RemoteClassName> ReadRemoteHierarchy(NQORVYX20::TCimHTTPNamespace& nameSpace);

std::vector<RemoteQualifierDeclaration> ReadRemoteQualifiers(NQORVYX20::TCimHTTPNamespace& nameSpace);

std::unique_ptr<InstanceSequence> OpenRemoteInstances(NQORVYX20::TCimHTTPNamespace& nameSpace,
                                                      NQORVYX20::TCimHTTPClass& cls, bool deep,
                                                      const NQORVYX20::TCIMContext& context);

bool HasRemotePulls(NQORVYX20::TCimHTTPNamespace& nameSpace);

boost::shared_ptr<NQORVYX20::ICIMInstance> ReadRemoteInstance(NQORVYX20::TCimHTTPNamespace& nameSpace,
                                                              const std::string& path);

NQORVYX20::TCIMReference ParsedReference(const std::string& path);

std::string NamespaceOfPath(const std::string& path);

} // namespace cimhttp
