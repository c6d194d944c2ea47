#pragma once

#include "model/Reading.h"
#include "reading/FaithfulClasses.h"
#include "reading/InstanceCache.h"

#include <boost/weak_ptr.hpp>

#include <memory>
#include <string>
#include <vector>

namespace NQORVYX20 {

class InstanceEnumeration;
class RemoteNamespace;

/// The reading that loses nothing: null is null, an instance is one of its own class under the server's path, classes
/// hang under their superclasses, each enumeration asks the server, a failure is an exception, and what could not be
/// taken from an answer is an incident. Definitions are fetched once.
///
/// Every operation that asks the server throws TVYXException, after a line in the log and with the namespace's
/// LastFailure set: eNotFound for what the server does not have, eRemoteConnectionFailed for every other failure.
class FaithfulReading : public Reading {
  public:
    explicit FaithfulReading(boost::shared_ptr<RemoteNamespace> nameSpace);

    NameRule Names() const override { return NameRule::kCim; }

    /// Throws, see above.
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

    /// One request, or one for each portion, and one for each class that is met for the first time. The callback is
    /// called once as many instances have been read as the context allows to be held.
    void EnumerateInstances(TCimHTTPClass& cls, const TInstanceCallback& callback, bool deep,
                            TCIMContext context) override;

    /// Answers from the last enumeration that had the instance; asks the server otherwise.
    boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& reference, TCIMContext context) override;
    void End() override;

    /// An enumeration that is read on demand, by the same keys of the context as EnumerateInstances().
    std::unique_ptr<InstanceEnumeration> OpenInstances(TCimHTTPClass& cls, bool deep, const TCIMContext& context);

    /// Instances that came as the answer to a request of another kind: each of its own class, under its path with the
    /// namespace that this reading reads. One request for each class that is met for the first time. Takes them out of
    /// the array.
    std::vector<boost::shared_ptr<ICIMInstance>> TakeOver(Pegasus::Array<Pegasus::CIMInstance>& remotes);

  private:
    friend class InstanceEnumeration;
    using TClassPointer = FaithfulClasses::TClassPointer;

    boost::shared_ptr<RemoteNamespace> LockNamespace() const;

    TClassPointer ClassOfPath(const TCIMReference& reference);

    boost::weak_ptr<RemoteNamespace> namespace_;
    FaithfulClasses classes_;
    InstanceCache cache_;
};

} // namespace NQORVYX20
