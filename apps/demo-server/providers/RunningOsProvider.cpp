#include "providers/RunningOsProvider.h"

#include "providers/Machine.h"
#include "schema/DateTime.h"

namespace demo {

void RunningOsProvider::Enumerate(const Visitor& visit) const {
    Instance link{std::string(ClassName()), {{"Since", Value::Text(Timestamp(BootTime(files_)))}}};
    operatingSystem_.Enumerate([&](const Instance& operatingSystem) {
        link.values["Antecedent"] = Value::Reference(PathOf(operatingSystemClass_, operatingSystem));
    });
    computer_.Enumerate([&](const Instance& computer) {
        link.values["Dependent"] = Value::Reference(PathOf(computerClass_, computer));
    });
    visit(link);
}

} // namespace demo
