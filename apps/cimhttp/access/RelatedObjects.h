#pragma once

#include "HostTypes.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace cimhttp {

/// Objects that a server has sent, perhaps from several of its namespaces. Each namespace has the definitions of the
/// classes of its objects.
class RelatedObjects {
  public:
    virtual ~RelatedObjects() = default;

    /// The namespaces in which there are objects, as the server spells them.
    virtual std::vector<std::string> Namespaces() const = 0;

    /// The objects of one of these, each of its own class under its path, which names the namespace. `nameSpace` must
    /// be connected to it. What cannot be taken over is among the incidents of `nameSpace`; so is a class in place of
    /// an instance. To be called once for each namespace. Throws like PluginAccess::ReadInstance.
    virtual std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>>
    TakeInstances(const std::string& name, NQORVYX20::ICIMNamespace& nameSpace) = 0;
};

} // namespace cimhttp
