#include "commands/CollectionReport.h"

#include "VersionText.h"
#include "commands/CollectedClass.h"
#include "commands/Collection.h"
#include "fleet/SinkStream.h"
#include "report/ReportPage.h"
#include "text/TimeText.h"

#include <set>

namespace cimhttp {

namespace {

/// An instance counts once, also where it was collected with a superclass, too.
void AddHealth(const Collection& collection, ReportFacts& facts) {
    std::set<std::string> telling;
    std::set<std::string> faulty;
    for (const auto& cls : collection.classes) {
        telling.insert(cls->Telling().begin(), cls->Telling().end());
        for (const ReportFacts::Fault& fault : cls->Faults()) {
            if (faulty.insert(fault.path).second) {
                facts.faults.push_back(fault);
            }
        }
    }
    facts.telling = telling.size();
}

} // namespace

void WriteReport(const Collection& collection, const std::vector<std::string>& losses, std::ostream& output) {
    ReportPage page(output);
    SinkStream document([&](std::string_view json) { page.Append(json); });
    WriteJson(collection, document);
    ReportFacts facts;
    facts.collected = TimeWithZone();
    facts.program = "cimhttp " + build_information::Version();
    facts.losses = losses;
    AddHealth(collection, facts);
    page.End(facts);
}

} // namespace cimhttp
