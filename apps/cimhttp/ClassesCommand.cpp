#include "ClassesCommand.h"

#include <fnmatch.h>

#include <algorithm>
#include <ostream>

#include "Session.h"

namespace cimhttp {

void RunClassesCommand(Session& session, const std::string& pattern, std::ostream& output) {
    auto names = session.ClassNames();
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
        if (pattern.empty() || ::fnmatch(pattern.c_str(), name.c_str(), FNM_CASEFOLD) == 0) {
            output << name << '\n';
        }
    }
}

} // namespace cimhttp
