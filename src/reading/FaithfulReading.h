#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <boost/weak_ptr.hpp>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "cimhttp/RemoteFailure.h"
#include "model/Reading.h"
#include "reading/DefinitionReader.h"
#include "reading/LastReadings.h"
#include "reading/SentClasses.h"

namespace NQORVYX20 {

class InstanceReader;
class TFaithfulInstance;
class TCimHTTPNamespace;

/// The reading that loses nothing: null is null, an instance is one of its own class under the server's path, classes
/// hang under their superclasses, each enumeration asks the server, a failure is an exception, and what could not be
/// taken from an answer is an incident. Definitions are fetched once.
///
/// Every operation that asks the server throws TVYXException, after a line in the log and with the namespace's
/// LastFailure set: 15 for what the server does not have, 42 for every other failure.
class FaithfulReading : public Reading {
  public:
    explicit FaithfulReading(boost::shared_ptr<TCimHTTPNamespace> nameSpace);

    /// Throws.
    boost::shared_ptr<ICIMClass> WithoutConnection() override;

    /// One request, and one for all qualifier declarations at the first class.
    boost::shared_ptr<ICIMClass> FetchClass(const std::string& name, const std::string& key,
                                            TCIMContext context) override;
    boost::shared_ptr<ICIMClass> AllocateClass(const std::string& name,
                                               boost::shared_ptr<TCimHTTPClass> superClass) override;
    void Define(TCimHTTPClass& cls) override;
    boost::shared_ptr<ICIMClass> FetchSuperClass(TCimHTTPClass& cls) override;

    /// Fetches the definitions of all subclasses, with `deep` of all classes below, with one request at the first call.
    void CompleteSubClasses(TCimHTTPClass& cls, bool deep) override;

    /// One request, and one for each class that is met for the first time. The callback is called when all is read.
    void EnumerateInstances(TCimHTTPClass& cls, const TInstanceCallback& callback, bool deep,
                            TCIMContext context) override;

    /// Answers from the last enumeration that had the instance; asks the server otherwise.
    boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& reference, TCIMContext context) override;
    void End() override;

  private:
    using TClassPointer = boost::shared_ptr<TCimHTTPClass>;
    using TInstances = LastReadings::TInstances;

    boost::shared_ptr<TCimHTTPNamespace> LockNamespace() const;

    /// Makes a request; its failure is the operation's. `what` begins the line in the log.
    template <typename Request>
    auto Ask(const std::string& what, const Request& request);
    [[noreturn]] void Fail(const std::string& what, const RemoteFailure& failure);

    TClassPointer Build(Pegasus::CIMClass& definition, TCIMContext context);
    void Fill(TCimHTTPClass& cls, Pegasus::CIMClass& definition);
    void Link(const TClassPointer& cls, const TClassPointer& superClass);
    std::vector<TClassPointer> BuildAll(Pegasus::Array<Pegasus::CIMClass>& definitions);
    void LinkToKnown(const TClassPointer& cls);

    TClassPointer ClassOf(const std::string& name, std::map<std::string, TClassPointer>& met);
    TClassPointer FetchClassOf(const std::string& name);
    TClassPointer TryClassOf(const std::string& name, std::string& reason);
    boost::shared_ptr<TFaithfulInstance> MakeInstance(Pegasus::CIMInstance& remote, const Pegasus::CIMObjectPath& path,
                                                      const TClassPointer& cls, InstanceReader& reader,
                                                      std::string& key);
    TInstances ReadInstances(TCimHTTPClass& cls, bool deep, const Pegasus::CIMPropertyList& properties);
    TClassPointer ClassOfPath(const TCIMReference& reference);

    boost::weak_ptr<TCimHTTPNamespace> fNamespace;
    DefinitionReader fDefinitions;
    SentClasses fSentClasses;
    bool fGivesClasses = true;                   // false when the server does not know the operation
    std::set<std::string> fWithAllSubClasses;    // the classes whose direct subclasses are linked
    std::map<std::string, std::size_t> fHeights; // how many classes are linked below, one under the other
    LastReadings fReadings;
};

} // namespace NQORVYX20
