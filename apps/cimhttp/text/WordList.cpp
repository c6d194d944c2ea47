#include "text/WordList.h"

namespace cimhttp {

namespace {

std::string Enumerated(const std::vector<std::string>& words, const char* last) {
    std::string list;
    for (const std::string& word : words) {
        list += (list.empty() ? "" : &word == &words.back() ? last : ", ") + word;
    }
    return list;
}

} // namespace

std::string Joined(const std::vector<std::string>& words, const char* separator) {
    std::string text;
    for (const std::string& word : words) {
        text.append(text.empty() ? "" : separator).append(word);
    }
    return text;
}

std::string Counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

std::string Listed(const std::vector<std::string>& words) { return Enumerated(words, " or "); }

std::string ListedTogether(const std::vector<std::string>& words) { return Enumerated(words, " and "); }

} // namespace cimhttp
