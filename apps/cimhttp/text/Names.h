#pragma once

#include "text/Ascii.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace cimhttp {

// Names in which case does not count (DSP0004 5.1.2.1).

inline bool IsSameName(const std::string& name, const std::string& other) { return EqualIgnoringCase(name, other); }

/// The alphabetical order of names.
struct NameBefore {
    bool operator()(const std::string& one, const std::string& other) const {
        return CompareIgnoringCase(one, other) < 0;
    }
};

using NameSet = std::set<std::string, NameBefore>;

template <typename Value>
using ByName = std::map<std::string, Value, NameBefore>;

/// Each name once, in the order of their first places.
std::vector<std::string> DistinctNames(const std::vector<std::string>& names);

/// The names in texts such as `Name,Size`, each once.
std::vector<std::string> NamesIn(const std::vector<std::string>& texts);

/// Whether a name as a whole matches a pattern of a shell (`*`, `?`, `[…]`).
bool Matches(const std::string& pattern, const std::string& name);

} // namespace cimhttp
