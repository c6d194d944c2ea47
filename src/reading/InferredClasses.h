#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>

namespace NQORVYX20 {

class TCimHTTPClass;
class RemoteNamespace;

/// The classes of which the server does not give the definition. They declare what their instances have: the properties
/// with the types that were sent, and as keys those that stand in the paths.
class InferredClasses {
  public:
    /// The class of that name, new without declarations.
    boost::shared_ptr<TCimHTTPClass> Get(const boost::shared_ptr<RemoteNamespace>& nameSpace, const std::string& name);

    /// Whether a class is one of these.
    bool Has(const TCimHTTPClass& cls) const;

    /// Adds the declarations of what an instance of a class has. Properties whose names the host cannot keep are left
    /// out.
    void Declare(RemoteNamespace& nameSpace, TCimHTTPClass& cls, Pegasus::CIMInstance& instance) const;

    void Clear() { classes_.clear(); }

  private:
    std::map<std::string, boost::shared_ptr<TCimHTTPClass>> classes_; // by name in lower case
};

} // namespace NQORVYX20
