#pragma once

#include "model/Reading.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMProperty.h>

#include <boost/weak_ptr.hpp>

#include <optional>
#include <set>
#include <string>

namespace NQORVYX20 {

class RemoteNames;
class StreamedText;
class RemoteNamespace;

/// The reading that hosts have always had: every class hangs under the root class, every instance is one of the class
/// that was asked for, null becomes the empty value of its type, instances are fetched once, and what cannot be read is
/// a line in the log. Its requests and texts do not change.
class CompatibleReading : public Reading {
  public:
    explicit CompatibleReading(boost::shared_ptr<RemoteNamespace> nameSpace);

    /// An empty pointer.
    boost::shared_ptr<ICIMClass> WithoutConnection() override { return {}; }

    /// Empty when the class could not be had; the log says why.
    boost::shared_ptr<ICIMClass> FetchClass(const std::string& name, const std::string& key,
                                            TCIMContext context) override;

    /// A failure is a line in the log and a TVYXException, eNotFound for what the server does not have, otherwise
    /// eRemoteConnectionFailed; within FetchClass, which reports it itself, what the client library throws.
    boost::shared_ptr<ICIMClass> AllocateClass(const std::string& name,
                                               boost::shared_ptr<TCimHTTPClass> superClass) override;

    /// Throws what the client library throws.
    void Define(TCimHTTPClass& cls) override;

    /// Is never asked: every class knows its superclass.
    boost::shared_ptr<ICIMClass> FetchSuperClass(TCimHTTPClass& cls) override;

    /// Leaves the list as it is.
    void CompleteSubClasses(TCimHTTPClass& cls, bool deep) override;
    void EnumerateInstances(TCimHTTPClass& cls, const TInstanceCallback& callback, bool deep,
                            TCIMContext context) override;

    /// The instance that the class has filed, or an empty pointer.
    boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& reference, TCIMContext context) override;

  private:
    boost::shared_ptr<RemoteNamespace> LockNamespace() const;

    class Climb;

    /// A class that is looked up: the name that is asked for, and its normal form.
    struct TNames {
        std::string asked;
        std::string key;
    };

    template <typename Step>
    bool Attempt(const std::string& name, const Step& step);
    bool FetchNames(Climb& climb, const TNames& wanted);
    std::optional<TNames> FindSuperClass(Climb& climb, boost::shared_ptr<ICIMClass>& found);
    boost::shared_ptr<ICIMClass> BuildClass(const Climb& climb, const boost::shared_ptr<ICIMClass>& superClass,
                                            TCIMContext context);
    void AddProperty(TCimHTTPClass& cls, Pegasus::CIMProperty& remote) const;
    void AddMethod(TCimHTTPClass& cls, Pegasus::CIMMethod& remote) const;

    void FetchInstances(TCimHTTPClass& cls, bool deep);
    void FileInstances(TCimHTTPClass& cls, bool deep);
    void AddInstance(TCimHTTPClass& cls, const Pegasus::CIMInstance& remote, RemoteNames& names, StreamedText& texts);

    boost::weak_ptr<RemoteNamespace> namespace_;
    std::set<std::string> lookups_;  // the normal names of the classes being fetched
    bool isClimbing_ = false;        // the superclass of one of them is being looked up
    std::optional<TNames> nextStep_; // the superclass that is to be fetched, too
};

} // namespace NQORVYX20
