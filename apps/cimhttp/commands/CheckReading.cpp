#include "commands/CheckReading.h"

#include "Failure.h"
#include "text/WordList.h"

namespace cimhttp {

namespace {

void AddUncompared(const UncomparedValues& uncompared, CheckReport& report) {
    if (uncompared.count > 0) {
        report.AddUnknown(Counted(uncompared.count, "value", "values") +
                          " cannot be compared with --where; the first: " + uncompared.first);
    }
}

/// As many as fit into a few megabytes; their order does not matter.
constexpr HeldInstances kHeld{1000, 50000};

} // namespace

void ReadForCheck(InstanceReader& reader, const std::function<void(const NQORVYX20::ICIMInstance&)>& take,
                  CheckReport& report) {
    std::size_t selected = 0;
    const auto takeAll = [&](const Instances& instances) {
        for (const auto& instance : instances) {
            take(*instance);
            ++selected;
        }
    };
    InstanceReader::Reading reading{};
    if (reader.CanStream()) {
        reading = reader.Stream(kHeld, takeAll);
    } else {
        reading = reader.Read();
        takeAll(reading.instances);
    }
    const IncidentTally incidents = reader.TakeIncidents();
    if (selected == 0) {
        const std::string none = reading.count == 0 ? "there is no instance of " + reader.ClassName()
                                                    : "none of the " + std::to_string(reading.count) +
                                                          " instances of " + reader.ClassName() + " matches --where";
        throw Failure(Failure::kNotFound, none + (incidents.IsEmpty() ? "" : "; " + incidents.Text()));
    }
    AddUncompared(reading.uncompared, report);
    if (!incidents.IsEmpty()) {
        report.AddUnknown(incidents.Text());
    }
}

void RefuseIfAllAreIgnored(const CheckReport& report, const std::string& className) {
    if (report.InstanceCount() == 0) {
        throw Failure(Failure::kNotFound, "nothing is checked: all " + std::to_string(report.IgnoredCount()) +
                                              " instances of " + className + " are ignored");
    }
}

} // namespace cimhttp
