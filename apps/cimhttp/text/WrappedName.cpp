#include "text/WrappedName.h"

#include "text/TerminalText.h"

#include <algorithm>

namespace cimhttp {

namespace {

bool IsUpper(char letter) { return letter >= 'A' && letter <= 'Z'; }

bool IsLower(char letter) { return letter >= 'a' && letter <= 'z'; }

/// A word begins with a capital after another letter (`FileSystem`), with the last of several capitals before a small
/// letter (`OSName`), and after an underscore.
bool IsWordBegin(std::string_view name, std::size_t i) {
    if (name[i - 1] == '_') {
        return name[i] != '_';
    }
    const bool isBeforeSmallLetter = i + 1 < name.size() && IsLower(name[i + 1]);
    return IsUpper(name[i]) && (!IsUpper(name[i - 1]) || isBeforeSmallLetter);
}

std::vector<std::string_view> WordsOf(std::string_view name) {
    std::vector<std::string_view> words;
    std::size_t begin = 0;
    for (std::size_t i = 1; i < name.size(); ++i) {
        if (IsWordBegin(name, i)) {
            words.push_back(name.substr(begin, i - begin));
            begin = i;
        }
    }
    words.push_back(name.substr(begin));
    return words;
}

} // namespace

std::vector<std::string> WrappedName(std::string_view name, std::size_t width) {
    std::vector<std::string> lines;
    std::size_t used = 0; // of the last line
    for (const std::string_view word : WordsOf(name)) {
        const std::size_t needed = DisplayWidth(word);
        if (!lines.empty() && used + needed <= width) {
            lines.back().append(word);
            used += needed;
            continue;
        }
        const auto parts = Wrapped(word, width);
        lines.insert(lines.end(), parts.begin(), parts.end());
        used = DisplayWidth(lines.back());
    }
    return lines;
}

std::size_t WidthOfTwoLines(std::string_view name) {
    const std::size_t whole = DisplayWidth(name);
    std::size_t least = whole;
    std::size_t first = 0;
    for (const std::string_view word : WordsOf(name)) {
        first += DisplayWidth(word);
        least = std::min(least, std::max(first, whole - first));
    }
    return least;
}

} // namespace cimhttp
