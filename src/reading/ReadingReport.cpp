#include "reading/ReadingReport.h"

#include <string>

#include "convert/CoreLog.h"

namespace NQORVYX20 {

void ReadingReport::AddAndLog(ReadingIncident incident) {
    std::string text = "TCimHTTPNamespace: " + (incident.path.empty() ? incident.className : incident.path);
    if (!incident.property.empty()) {
        text += ", property " + incident.property;
    }
    LogWarning(text + ": " + incident.reason);
    Add(std::move(incident));
}

} // namespace NQORVYX20
