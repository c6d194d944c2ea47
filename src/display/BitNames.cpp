#include "display/BitNames.h"

#include <charconv>

namespace NQORVYX20 {

namespace {

constexpr unsigned kBits = 64;

/// kBits for what is no number of a bit.
unsigned BitOf(const std::string& number) {
    unsigned bit = kBits;
    const char* const end = number.data() + number.size();
    const auto parsed = std::from_chars(number.data(), end, bit);
    return parsed.ec == std::errc() && parsed.ptr == end && bit < kBits ? bit : kBits;
}

} // namespace

BitNames::BitNames(const std::optional<std::vector<std::string>>& numbers, const std::vector<std::string>& names) {
    for (std::size_t i = 0; i < names.size() && (!numbers || i < numbers->size()); ++i) {
        const unsigned bit = numbers ? BitOf((*numbers)[i]) : static_cast<unsigned>(i);
        if (bit < kBits && !names[i].empty()) {
            names_.emplace(bit, names[i]);
        }
    }
}

std::string BitNames::TextOf(std::uint64_t number) const {
    std::string text;
    for (unsigned bit = 0; bit < kBits; ++bit) {
        if ((number >> bit & 1U) == 0) {
            continue;
        }
        const auto found = names_.find(bit);
        text.append(text.empty() ? "" : ", ");
        text.append(found == names_.end() ? "bit " + std::to_string(bit) : found->second);
    }
    return text;
}

} // namespace NQORVYX20
