#include "text/Pattern.h"

#include <fnmatch.h>
#include <strings.h>

namespace cimhttp {

bool Matches(const std::string& pattern, const std::string& text) {
    return ::fnmatch(pattern.c_str(), text.c_str(), FNM_CASEFOLD) == 0;
}

bool IsSameName(const std::string& name, const std::string& other) {
    return ::strcasecmp(name.c_str(), other.c_str()) == 0;
}

} // namespace cimhttp
