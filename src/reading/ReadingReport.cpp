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

void ReadingReport::Add(const ReadingIncidents& incidents) {
    ReadingIncidents sum = incidents_;
    auto counts = incidents.Counts();
    for (const ReadingIncident& incident : incidents.First()) {
        sum.Add(incident);
        --counts[incident.cause];
    }
    for (const auto& [cause, count] : counts) {
        if (count != 0) {
            sum.AddMore(cause, count);
        }
    }
    incidents_ = std::move(sum);
}

} // namespace NQORVYX20
