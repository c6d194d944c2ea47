#include "providers/ComputerSystemProvider.h"

#include "providers/Machine.h"

#include <sys/utsname.h>

namespace demo {

namespace {

std::uint64_t CountProcessors(const SystemFiles& files) {
    std::uint64_t count = 0;
    for (const auto& line : files.Lines("proc/cpuinfo")) {
        if (line.rfind("processor", 0) == 0) {
            ++count;
        }
    }
    return count;
}

std::string Architecture() {
    utsname names{};
    return ::uname(&names) == 0 ? names.machine : "";
}

} // namespace

void ComputerSystemProvider::Enumerate(const Visitor& visit) const {
    Instance instance{kComputerSystemClass, {}};
    auto& values = instance.values;
    const std::string name = ComputerName(files_);
    values["CreationClassName"] = Value::Text(kComputerSystemClass);
    values["Name"] = Value::Text(name);
    values["NameFormat"] = Value::Text("Other");
    values["ElementName"] = Value::Text(name);
    values["Caption"] = Value::Text("This computer");
    values["Dedicated"] = Value::Array({"0"});
    SetEnabled(instance);
    const std::string machineId = files_.Line("etc/machine-id").value_or("");
    if (!machineId.empty()) {
        values["OtherIdentifyingInfo"] = Value::Array({machineId});
        values["IdentifyingDescriptions"] = Value::Array({"Machine ID"});
    }
    values["Architecture"] = TextOrNull(Architecture());
    values["NumberOfLogicalProcessors"] = Value::Number(CountProcessors(files_));
    values["Model"] = TextOrNull(files_.Line("sys/class/dmi/id/product_name").value_or(""));
    values["SerialNumber"] = TextOrNull(files_.Line("sys/class/dmi/id/product_serial").value_or(""));
    visit(instance);
}

} // namespace demo
