#include "commands/CollectionReport.h"

#include "VersionText.h"
#include "commands/Collection.h"
#include "fleet/SinkStream.h"
#include "host/ICIMInstance.h"
#include "monitoring/Health.h"
#include "monitoring/InstanceName.h"
#include "output/InstanceProperties.h"
#include "report/ReportPage.h"
#include "text/TimeText.h"

#include <set>
#include <utility>

namespace cimhttp {

using namespace NQORVYX20;

namespace {

/// An instance counts once, also where it was collected with a superclass, too.
void AddHealth(const Collection& collection, const ValueTexts& texts, ReportFacts& facts) {
    std::set<std::string> paths;
    for (const Collection::Class& cls : collection.classes) {
        for (const auto& instance : cls.instances) {
            const Health health = HealthOf(*instance, texts);
            std::string path = instance->GetReference(TCIMContext()).GetPath();
            if (!health.state || !paths.insert(path).second) {
                continue;
            }
            ++facts.telling;
            if (*health.state != ServiceState::kOk) {
                const char* const state = *health.state == ServiceState::kCritical ? "critical" : "warning";
                facts.faults.push_back(
                    {state, ClassNameOf(*instance), std::move(path), InstanceName(*instance).Label(), health.faults});
            }
        }
    }
}

} // namespace

void WriteReport(const Collection& collection, const ValueTexts& texts, const std::vector<std::string>& losses,
                 std::ostream& output) {
    ReportPage page(output);
    SinkStream document([&](std::string_view json) { page.Append(json); });
    WriteJson(collection, texts, document);
    ReportFacts facts;
    facts.collected = TimeWithZone();
    facts.program = "cimhttp " + build_information::Version();
    facts.losses = losses;
    AddHealth(collection, texts, facts);
    page.End(facts);
}

} // namespace cimhttp
