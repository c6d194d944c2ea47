#include "provider/PrintableText.h"

#include <algorithm>
#include <cstddef>

namespace NQORVYX20 {

std::string PrintableText(const std::string& text) {
    constexpr std::size_t kLongest = 400;
    std::string shown = text.substr(0, kLongest);
    std::replace_if(
        shown.begin(), shown.end(), [](char character) { return character < ' ' || character > '~'; }, '?');
    return text.size() > kLongest ? shown + "..." : shown;
}

} // namespace NQORVYX20
