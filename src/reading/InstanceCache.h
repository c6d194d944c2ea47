#pragma once

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

namespace NQORVYX20 {

class ICIMInstance;

/// The instances of the last enumeration of each class, to answer GetInstance from.
class InstanceCache {
  public:
    using TInstances = std::map<std::string, boost::shared_ptr<ICIMInstance>>; // by InstancePath::key

    /// Keeps an enumeration of a class in the place of the one before. Class names are in their normal form.
    void Keep(const std::string& className, boost::shared_ptr<const TInstances> instances);

    /// Forgets the enumeration of a class.
    void Drop(const std::string& className);

    /// The instance of a class as it was enumerated last, perhaps with the instances of a superclass; empty when it was
    /// not there then.
    boost::shared_ptr<ICIMInstance> Find(const std::string& className, const std::string& pathKey) const;

    void Clear() { enumerations_.clear(); }

  private:
    struct TEnumeration {
        std::string className;
        boost::shared_ptr<const TInstances> instances;
    };

    std::vector<TEnumeration> enumerations_; // the newest last
};

} // namespace NQORVYX20
