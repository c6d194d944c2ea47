#pragma once

#include "host/TCIMContext.h"
#include "reading/DefinitionReader.h"
#include "reading/InferredClasses.h"

#include <Pegasus/Client/CIMClient.h>

#include <boost/weak_ptr.hpp>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace NQORVYX20 {

class TCimHTTPClass;
class RemoteNamespace;

/// The classes of a faithful namespace: fetched once, each under its superclass. Operations throw as FaithfulReading
/// does, unless stated otherwise.
class FaithfulClasses {
  public:
    using TClassPointer = boost::shared_ptr<TCimHTTPClass>;

    explicit FaithfulClasses(boost::shared_ptr<RemoteNamespace> nameSpace);

    /// A class that the namespace does not hold yet. Of a server that does not know the operation, a class that
    /// declares what its instances turn out to have.
    TClassPointer Fetch(const std::string& name, TCIMContext context);

    /// Fills a class that was allocated.
    void Define(TCimHTTPClass& cls);

    /// The class of an instance that the server has sent, or the one in a path. One whose definition cannot be had
    /// declares what its instances turn out to have; with `isReported` that is an incident. Throws what the client
    /// library throws when the server cannot be asked at all.
    TClassPointer ClassOf(const std::string& name, bool isReported);

    /// Whether it is a class without a definition.
    bool IsInferred(const TCimHTTPClass& cls) const { return inferredClasses_.Has(cls); }

    /// Adds what an instance has to the declarations of a class without a definition.
    void Infer(TCimHTTPClass& cls, Pegasus::CIMInstance& instance);

    /// The superclass of a class that knows it by name only. Links the two.
    TClassPointer FetchSuperClass(TCimHTTPClass& cls);

    /// Fetches and links the subclasses of a class, with `deep` all classes below, at the first call.
    void CompleteSubClasses(TCimHTTPClass& cls, bool deep);

    void Clear() { inferredClasses_.Clear(); }

  private:
    boost::shared_ptr<RemoteNamespace> LockNamespace() const;

    Pegasus::CIMClass FetchDefinition(const std::string& name);
    TClassPointer Build(Pegasus::CIMClass& definition, TCIMContext context);
    std::vector<TClassPointer> BuildAll(Pegasus::Array<Pegasus::CIMClass>& definitions);
    void Fill(TCimHTTPClass& cls, Pegasus::CIMClass& definition);
    TClassPointer TryClassOf(const std::string& name, std::string& reason);
    void Link(const TClassPointer& cls, const TClassPointer& superClass);
    void LinkToKnown(const TClassPointer& cls);

    boost::weak_ptr<RemoteNamespace> namespace_;
    DefinitionReader definitions_;
    InferredClasses inferredClasses_;
    bool givesClasses_ = true;                   // false when the server does not know the operation
    std::set<std::string> withAllSubClasses_;    // the classes whose direct subclasses are linked
    std::map<std::string, std::size_t> heights_; // how many classes are linked below, one under the other
};

} // namespace NQORVYX20
