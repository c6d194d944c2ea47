#pragma once

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

namespace NQORVYX20 {

class ICIMInstance;

/// The instances of the last reading of each class, for those who ask for one of them.
class LastReadings {
  public:
    using TInstances = std::map<std::string, boost::shared_ptr<ICIMInstance>>; // by InstancePath::key

    /// Keeps a reading of a class, which takes the place of the one before. Class names are in their normal form.
    void Keep(const std::string& className, boost::shared_ptr<const TInstances> instances);

    /// Forgets the reading of a class.
    void Drop(const std::string& className);

    /// The instance of a class as it was read last, perhaps with the instances of a superclass; empty when it was not
    /// there then.
    boost::shared_ptr<ICIMInstance> Find(const std::string& className, const std::string& pathKey) const;

    void Clear() { readings_.clear(); }

  private:
    struct TReading {
        std::string className;
        boost::shared_ptr<const TInstances> instances;
    };

    std::vector<TReading> readings_; // the newest last
};

} // namespace NQORVYX20
