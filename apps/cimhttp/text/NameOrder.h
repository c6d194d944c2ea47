#pragma once

#include <strings.h>

#include <map>
#include <set>
#include <string>

namespace cimhttp {

/// The alphabetical order of names, in which case does not count (DSP0004 5.1.2.1).
struct NameBefore {
    bool operator()(const std::string& one, const std::string& other) const {
        return ::strcasecmp(one.c_str(), other.c_str()) < 0;
    }
};

using NameSet = std::set<std::string, NameBefore>;

template <typename Value>
using ByName = std::map<std::string, Value, NameBefore>;

} // namespace cimhttp
