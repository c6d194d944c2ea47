#include "ClassesCommand.h"

#include <fnmatch.h>

#include <algorithm>
#include <ostream>

#include "Session.h"

namespace cimhttp {

CommandDescription ClassesCommand::Describe() {
    return {"classes",
            "List the names of the server's classes",
            {{"PATTERN", "Only names that match, such as 'CIM_*Port'; case does not matter", false, &pattern_}},
            {},
            {},
            {}};
}

int ClassesCommand::Run(const CommandContext& context) {
    auto names = context.Connect().ClassNames();
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
        if (pattern_.empty() || ::fnmatch(pattern_.c_str(), name.c_str(), FNM_CASEFOLD) == 0) {
            context.output << name << '\n';
        }
    }
    return 0;
}

} // namespace cimhttp
