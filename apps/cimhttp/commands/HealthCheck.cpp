#include "commands/HealthCheck.h"

#include "Failure.h"
#include "commands/CheckReading.h"
#include "commands/InstanceQuery.h"
#include "commands/InstanceReader.h"
#include "connection/ServerSchema.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "monitoring/Health.h"
#include "monitoring/InstanceName.h"
#include "output/ValueTexts.h"
#include "text/Names.h"
#include "text/WordList.h"

#include <algorithm>

namespace cimhttp {

using namespace NQORVYX20;

namespace {

constexpr bool kWithSubclasses = true;

void AddNumber(const char* label, std::size_t number, CheckReport& report) {
    report.Performance().Add({label, {}, {static_cast<long double>(number), {}}, false, {}, {}});
}

} // namespace

ServiceState HealthCheck::Run(const Session& session, const DisplayForm& form, CheckReport& report,
                              std::ostream& output) const {
    const Properties declared = PropertiesOf(*ServerSchema(session).Class(kHealthElements));
    InstanceReader reader(session, kHealthElements, InstanceQuery(HealthPropertiesIn(declared), request_.conditions),
                          kWithSubclasses, form);
    const ValueTexts texts(session.Access(), form);
    std::size_t telling = 0;
    const auto take = [&](const ICIMInstance& instance) {
        const InstanceName name(instance);
        if (request_.Ignores(name)) {
            report.AddIgnored();
            return;
        }
        const Health health = HealthOf(instance, texts);
        telling += health.state ? 1 : 0;
        if (health.state.value_or(ServiceState::kOk) == ServiceState::kOk) {
            report.AddInstance();
        } else {
            report.AddInstance(*health.state, ClassNameOf(instance) + ' ' + name.Label(), health.faults,
                               name.ShortPath());
        }
    };
    ReadForCheck(reader, take, report);
    RefuseIfAllAreIgnored(report, kHealthElements);
    const std::size_t warnings = report.CountOf(ServiceState::kWarning);
    const std::size_t criticals = report.CountOf(ServiceState::kCritical);
    if (telling == 0) {
        report.AddUnknown("no element tells its health");
    }
    AddNumber("elements", report.InstanceCount(), report);
    AddNumber("ok", telling - warnings - criticals, report);
    AddNumber("warning", warnings, report);
    AddNumber("critical", criticals, report);
    report.Write(Counted(report.InstanceCount(), "element", "elements") + ", " + std::to_string(telling) +
                     (telling == 1 ? " tells its health" : " tell their health"),
                 {}, output);
    return report.State();
}

} // namespace cimhttp
