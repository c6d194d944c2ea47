#include "providers/ParentProcessProvider.h"

#include <map>
#include <string>

namespace demo {

void ParentProcessProvider::Enumerate(const Visitor& visit) const {
    struct Process {
        Value reference;
        std::string parent;
    };
    std::map<std::string, Process> processes;
    processes_.Enumerate([&](const Instance& process) {
        processes[*process.values.at("Handle").AsText()] = {Value::Reference(PathOf(declaration_, process)),
                                                            *process.values.at("ParentProcessID").AsText()};
    });
    for (const auto& [handle, process] : processes) {
        const auto parent = processes.find(process.parent);
        if (parent != processes.end()) {
            visit({std::string(ClassName()),
                   {{"Antecedent", parent->second.reference}, {"Dependent", process.reference}}});
        }
    }
}

} // namespace demo
