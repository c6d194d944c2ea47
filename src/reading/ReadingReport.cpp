#include "reading/ReadingReport.h"

#include "convert/CoreLog.h"

#include <string>

namespace NQORVYX20 {

void ReadingReport::AddAndLog(ReadingIncident incident) {
    const std::string& object = incident.path.empty() ? incident.className : incident.path;
    std::string text = "TCimHTTPNamespace: " + object;
    if (!incident.property.empty()) {
        text += (object.empty() ? "" : ", ") + ("property " + incident.property);
    }
    LogWarning(text + ": " + incident.reason);
    Add(std::move(incident));
}

} // namespace NQORVYX20
