#include "text/Names.h"

#include <fnmatch.h>

namespace cimhttp {

std::vector<std::string> DistinctNames(const std::vector<std::string>& names) {
    std::vector<std::string> distinct;
    NameSet known;
    for (const std::string& name : names) {
        if (known.insert(name).second) {
            distinct.push_back(name);
        }
    }
    return distinct;
}

std::vector<std::string> NamesIn(const std::vector<std::string>& texts) {
    std::vector<std::string> names;
    for (const std::string& text : texts) {
        std::size_t begin = 0;
        for (std::size_t comma = text.find(','); comma != std::string::npos; comma = text.find(',', begin)) {
            names.push_back(text.substr(begin, comma - begin));
            begin = comma + 1;
        }
        names.push_back(text.substr(begin));
    }
    return DistinctNames(names);
}

bool Matches(const std::string& pattern, const std::string& name) {
    return ::fnmatch(pattern.c_str(), name.c_str(), FNM_CASEFOLD) == 0;
}

} // namespace cimhttp
