#include "providers/RunningOsProvider.h"

#include "providers/Machine.h"
#include "schema/DateTime.h"

namespace demo {

void RunningOsProvider::Enumerate(const Visitor& visit) const {
    const Value computer = Value::Text(ComputerName(files_));
    Instance instance{std::string(ClassName()), {}};
    instance.values["Antecedent"] =
        Value::Reference({kOperatingSystemClass,
                          {{"CSCreationClassName", CimType::kString, Value::Text(kComputerSystemClass)},
                           {"CSName", CimType::kString, computer},
                           {"CreationClassName", CimType::kString, Value::Text(kOperatingSystemClass)},
                           {"Name", CimType::kString, Value::Text(OperatingSystemName(files_))}}});
    instance.values["Dependent"] =
        Value::Reference({kComputerSystemClass,
                          {{"CreationClassName", CimType::kString, Value::Text(kComputerSystemClass)},
                           {"Name", CimType::kString, computer}}});
    instance.values["Since"] = Value::Text(Timestamp(BootTime(files_)));
    visit(instance);
}

} // namespace demo
