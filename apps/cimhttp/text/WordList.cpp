#include "text/WordList.h"

namespace cimhttp {

std::string Listed(const std::vector<std::string>& words) {
    std::string list;
    for (const std::string& word : words) {
        list += (list.empty() ? "" : &word == &words.back() ? " or " : ", ") + word;
    }
    return list;
}

} // namespace cimhttp
