#include "text/WordList.h"

namespace cimhttp {

namespace {

std::string Joined(const std::vector<std::string>& words, const char* last) {
    std::string list;
    for (const std::string& word : words) {
        list += (list.empty() ? "" : &word == &words.back() ? last : ", ") + word;
    }
    return list;
}

} // namespace

std::string Listed(const std::vector<std::string>& words) { return Joined(words, " or "); }

std::string ListedTogether(const std::vector<std::string>& words) { return Joined(words, " and "); }

} // namespace cimhttp
