#include "reading/LastReadings.h"

#include "host/ICIMInstance.h"

#include <algorithm>
#include <utility>

namespace NQORVYX20 {

void LastReadings::Keep(const std::string& className, boost::shared_ptr<const TInstances> instances) {
    Drop(className);
    fReadings.push_back({className, std::move(instances)});
}

void LastReadings::Drop(const std::string& className) {
    fReadings.erase(std::remove_if(fReadings.begin(), fReadings.end(),
                                   [&](const TReading& reading) { return reading.className == className; }),
                    fReadings.end());
}

boost::shared_ptr<ICIMInstance> LastReadings::Find(const std::string& className, const std::string& pathKey) const {
    for (auto reading = fReadings.rbegin(); reading != fReadings.rend(); ++reading) {
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
