#include "display/ValueMapBuilder.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>

namespace NQORVYX20 {

namespace {

constexpr std::string_view kDots = "..";
constexpr std::uint64_t kOpenEnd = std::numeric_limits<std::uint64_t>::max();

bool StartsWithDots(std::string_view text) { return text.substr(0, kDots.size()) == kDots; }

/// Reads a number and takes it off the text's start.
std::optional<std::uint64_t> TakeNumber(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
    }
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

} // namespace

ValueMapBuilder::ValueMapBuilder(std::vector<ValueMapRow>& table, std::string& defaultText)
    : table_(table), defaultText_(defaultText) {}

bool ValueMapBuilder::Add(std::string_view entry, const std::string& text) {
    if (entry == kDots) {
        if (IsLastRowOpen()) {
            return false;
        }
        defaultText_ = text;
    } else if (StartsWithDots(entry)) {
        AddRangeFromZero(entry.substr(kDots.size()), text);
    } else {
        AddNumber(entry, text);
    }
    return true;
}

bool ValueMapBuilder::IsLastRowOpen() const { return !table_.empty() && table_.back().high == kOpenEnd; }

void ValueMapBuilder::AddRangeFromZero(std::string_view end, const std::string& text) {
    if (const auto high = TakeNumber(end)) {
        table_.push_back({0, *high, text});
    }
}

void ValueMapBuilder::AddNumber(std::string_view entry, const std::string& text) {
    const auto low = TakeNumber(entry);
    if (!low) {
        return;
    }
    if (IsLastRowOpen()) {
        table_.back().high = *low - 1; // 0 leaves it open: there is nothing below to end it at
    }
    table_.push_back({*low, StartsWithDots(entry) ? kOpenEnd : *low, text});
}

} // namespace NQORVYX20
