#include "commands/ClassPattern.h"

#include "text/Names.h"
#include "text/TerminalText.h"

#include <ostream>

namespace cimhttp {

bool IsSelected(const std::string& pattern, const std::string& className) {
    return pattern.empty() || Matches(pattern, className);
}

void SayThatNoClassMatches(const std::string& pattern, std::size_t count, std::ostream& errors) {
    const bool isPattern = pattern.find_first_of("*?") != std::string::npos;
    errors << "cimhttp: no class matches; without the pattern there "
           << (count == 1 ? "is 1" : "are " + std::to_string(count))
           << (isPattern ? "" : " (a part of a name is '*" + Printable(pattern) + "*')") << '\n';
}

} // namespace cimhttp
