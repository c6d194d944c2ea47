#pragma once

#include "convert/NormalName.h"
#include "host/TCIMContext.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {

class ICIMClass;
class ICIMInstance;
class TCIMReference;
class TCimHTTPClass;

/// How the objects of a namespace get what they hold from its server. A namespace chooses one of the implementations
/// when it is initialised; whatever differs between two ways of reading is behind this interface. Classes share it with
/// their namespace and may outlive that: operations that need the namespace then throw boost::bad_weak_ptr.
class Reading {
  public:
    using TClassCallback = boost::function<bool(boost::shared_ptr<ICIMClass>)>;
    using TInstanceCallback = boost::function<bool(boost::shared_ptr<ICIMInstance>)>;

    virtual ~Reading() = default;

    /// The names that classes and their elements may have.
    virtual NameRule Names() const { return NameRule::kHost; }

    /// What a look-up of a class gives while the namespace is not connected.
    virtual boost::shared_ptr<ICIMClass> WithoutConnection() = 0;

    /// A class that the namespace does not hold yet, by a valid name and its normal form.
    virtual boost::shared_ptr<ICIMClass> FetchClass(const std::string& name, const std::string& key,
                                                    TCIMContext context) = 0;

    /// A class that is initialised and not added.
    virtual boost::shared_ptr<ICIMClass> AllocateClass(const std::string& name,
                                                       boost::shared_ptr<TCimHTTPClass> superClass) = 0;

    /// Fills a class that is new and not the root class.
    virtual void Define(TCimHTTPClass& cls) = 0;

    /// The superclass of a class that knows it only by name. Links the two.
    virtual boost::shared_ptr<ICIMClass> FetchSuperClass(TCimHTTPClass& cls) = 0;

    /// Makes the list of a class's subclasses, with `deep` that of all classes below, as complete as this reading
    /// promises.
    virtual void CompleteSubClasses(TCimHTTPClass& cls, bool deep) = 0;

    virtual void EnumerateInstances(TCimHTTPClass& cls, const TInstanceCallback& callback, bool deep,
                                    TCIMContext context) = 0;

    virtual boost::shared_ptr<ICIMInstance> GetInstance(const TCIMReference& reference, TCIMContext context) = 0;

    /// Releases the objects that it keeps: the namespace ends.
    virtual void End() {}
};

} // namespace NQORVYX20
