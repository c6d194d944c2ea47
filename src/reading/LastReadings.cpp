#include "reading/LastReadings.h"

#include "host/ICIMInstance.h"

#include <algorithm>
#include <utility>

namespace NQORVYX20 {

void LastReadings::Keep(const std::string& className, boost::shared_ptr<const TInstances> instances) {
    Drop(className);
    readings_.push_back({className, std::move(instances)});
}

void LastReadings::Drop(const std::string& className) {
    readings_.erase(std::remove_if(readings_.begin(), readings_.end(),
                                   [&](const TReading& reading) { return reading.className == className; }),
                    readings_.end());
}

boost::shared_ptr<ICIMInstance> LastReadings::Find(const std::string& className, const std::string& pathKey) const {
    for (auto reading = readings_.rbegin(); reading != readings_.rend(); ++reading) {
        const auto found = reading->instances->find(pathKey);
        if (found != reading->instances->end()) {
            return found->second;
        }
        if (reading->className == className) {
            return {}; // older readings have it, but it has gone since
        }
    }
    return {};
}

} // namespace NQORVYX20
