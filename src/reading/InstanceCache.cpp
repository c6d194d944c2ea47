#include "reading/InstanceCache.h"

#include "host/ICIMInstance.h"

#include <algorithm>
#include <utility>

namespace NQORVYX20 {

void InstanceCache::Keep(const std::string& className, boost::shared_ptr<const TInstances> instances) {
    Drop(className);
    enumerations_.push_back({className, std::move(instances)});
}

void InstanceCache::Drop(const std::string& className) {
    enumerations_.erase(
        std::remove_if(enumerations_.begin(), enumerations_.end(),
                       [&](const TEnumeration& enumeration) { return enumeration.className == className; }),
        enumerations_.end());
}

boost::shared_ptr<ICIMInstance> InstanceCache::Find(const std::string& className, const std::string& pathKey) const {
    for (auto enumeration = enumerations_.rbegin(); enumeration != enumerations_.rend(); ++enumeration) {
        const auto found = enumeration->instances->find(pathKey);
        if (found != enumeration->instances->end()) {
            return found->second;
        }
        if (enumeration->className == className) {
            return {}; // older ones have it, but it has gone since
        }
    }
    return {};
}

} // namespace NQORVYX20
