#include "provider/HostPattern.h"

#include "provider/HostName.h"

#include <cstddef>

namespace NQORVYX20 {

namespace {

/// Goes on from the newest star when a character does not fit, so that it takes no more steps than the product of both
/// lengths.
bool Fits(const std::string& pattern, const std::string& text) {
    std::size_t at = 0;
    std::size_t star = std::string::npos;
    std::size_t resumed = 0; // where the text goes on after that star
    for (std::size_t i = 0; i < text.size();) {
        if (at < pattern.size() && pattern[at] == '*') {
            star = at++;
            resumed = i;
        } else if (at < pattern.size() && (pattern[at] == '?' || pattern[at] == text[i])) {
            ++at;
            ++i;
        } else if (star != std::string::npos) {
            at = star + 1;
            i = ++resumed;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', at) == std::string::npos;
}

} // namespace

HostPattern::HostPattern(const std::string& text) : text_(text), normal_(NormalHost(text)) {}

bool HostPattern::Matches(const std::string& host) const { return Fits(normal_, NormalHost(host)); }

} // namespace NQORVYX20
