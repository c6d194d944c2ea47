#include "text/Ascii.h"

#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/LanguageTag.h>

#include <algorithm>

namespace Pegasus {
inline namespace bundled {

namespace {

constexpr std::size_t kLongestWord = 8;

constexpr bool isLetterOrDigit(char c) noexcept { return text::isLetter(c) || text::isDigit(c); }

template <typename IsAllowed>
bool isWord(std::string_view text, IsAllowed isAllowed) noexcept {
    return !text.empty() && text.size() <= kLongestWord && std::all_of(text.begin(), text.end(), isAllowed);
}

bool isTag(std::string_view text) noexcept {
    auto hyphen = text.find('-');
    bool isGood = isWord(text.substr(0, hyphen), text::isLetter);
    while (isGood && hyphen != std::string_view::npos) {
        text.remove_prefix(hyphen + 1);
        hyphen = text.find('-');
        isGood = isWord(text.substr(0, hyphen), isLetterOrDigit);
    }
    return isGood;
}

} // namespace

LanguageTag::LanguageTag(const String& tag) : tag_(tag) {
    if (tag.view() != "*" && !isTag(tag.view())) {
        throw InvalidNameException(tag);
    }
}

void AcceptLanguageList::insert(const LanguageTag& tag, Real32 qualityValue) {
    items_.append({tag, qualityValue});
    std::stable_sort(items_.begin(), items_.end(), [](const auto& a, const auto& b) { return a.second > b.second; });
}

} // namespace bundled
} // namespace Pegasus
