#include "display/StandardValueMap.h"

#include "convert/LetterCase.h"
#include "display/NumberTypes.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string_view>
#include <type_traits>
#include <utility>

namespace NQORVYX20 {

namespace {

using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr std::uint64_t kGreatest = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;

bool IsNumberType(ECIMType type) { return type == ECIMType::eCIMBoolean || IsUnsigned(type) || IsSigned(type); }

std::string_view Trimmed(std::string_view text) {
    constexpr const char* kBlanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::optional<std::uint64_t> Magnitude(std::string_view digits, int base) {
    std::uint64_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto parsed = std::from_chars(digits.data(), end, number, base);
    return parsed.ec == std::errc() && parsed.ptr == end ? std::optional(number) : std::nullopt;
}

bool AreAll(std::string_view digits, const char* among) {
    return !digits.empty() && digits.find_first_not_of(among) == std::string_view::npos;
}

/// The number without its sign.
std::optional<std::uint64_t> ParseMagnitude(std::string_view digits) {
    if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
        return Magnitude(digits.substr(2), 16);
    }
    if (digits.size() > 1 && (digits.back() == 'b' || digits.back() == 'B')) {
        return Magnitude(digits.substr(0, digits.size() - 1), 2);
    }
    const bool isOctal = digits.size() > 1 && digits.front() == '0' && AreAll(digits, "01234567");
    return Magnitude(digits, isOctal ? 8 : 10);
}

std::vector<std::string> CountedFromZero(std::size_t count) {
    std::vector<std::string> entries;
    for (std::size_t i = 0; i < count; ++i) {
        entries.push_back(std::to_string(i));
    }
    return entries;
}

} // namespace

StandardValueMap::StandardValueMap(TCIMValue::TCIMType type, const std::optional<std::vector<std::string>>& entries,
                                   const std::vector<std::string>& texts)
    : isSigned_(IsSigned(type)), isText_(!IsNumberType(type)) {
    if (!entries && isText_) {
        return;
    }
    const std::vector<std::string> counted = entries ? *entries : CountedFromZero(texts.size());
    std::vector<ValueMapRow> rows;
    for (std::size_t i = 0; i < counted.size(); ++i) {
        const std::string text = i < texts.size() ? texts[i] : std::string();
        if (Trimmed(counted[i]) == "..") {
            others_ = others_.empty() ? text : others_;
        } else if (isText_) {
            texts_.emplace(counted[i], text);
        } else {
            AddRange(counted[i], text, rows);
        }
    }
    if (!isText_) {
        numbers_.emplace(std::move(rows), std::string());
    }
}

/// An entry that makes no sense claims nothing.
bool StandardValueMap::AddRange(const std::string& entry, const std::string& text,
                                std::vector<ValueMapRow>& rows) const {
    const auto dots = entry.find("..");
    const std::string low(Trimmed(entry.substr(0, dots)));
    const std::string high(dots == std::string::npos ? low : Trimmed(entry.substr(dots + 2)));
    const bool isOpen = dots != std::string::npos;
    const auto lowest = isOpen && low.empty() ? std::optional<std::uint64_t>(0) : KeyOf(low);
    const auto highest = isOpen && high.empty() ? std::optional(kGreatest) : KeyOf(high);
    if (lowest && highest) {
        rows.push_back({*lowest, *highest, text});
    }
    return lowest && highest;
}

/// Signed numbers in the order of unsigned ones.
std::optional<std::uint64_t> StandardValueMap::KeyOf(const std::string& number) const {
    const std::string word = LowerCase(number);
    if (word == "true" || word == "false") {
        return word == "true" ? 1 : 0;
    }
    const bool isNegative = !number.empty() && number.front() == '-';
    const bool hasSign = isNegative || (!number.empty() && number.front() == '+');
    const auto size = ParseMagnitude(std::string_view(number).substr(hasSign ? 1 : 0));
    if (!size || (isNegative && *size != 0 && !isSigned_)) {
        return std::nullopt;
    }
    if (!isSigned_) {
        return size;
    }
    if (isNegative ? *size > kSignBit : *size >= kSignBit) {
        return std::nullopt;
    }
    return isNegative ? kSignBit - *size : kSignBit + *size;
}

std::optional<std::uint64_t> StandardValueMap::KeyOf(const TCIMValue& value) const {
    return value.Visit([this](const auto& content) -> std::optional<std::uint64_t> {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Content, bool>) {
            return content ? 1 : 0;
        } else if constexpr (std::is_integral_v<Content>) {
            if (std::is_signed_v<Content> != isSigned_) {
                return std::nullopt;
            }
            return isSigned_ ? static_cast<std::uint64_t>(content) ^ kSignBit : static_cast<std::uint64_t>(content);
        } else {
            return std::nullopt;
        }
    });
}

const std::string* StandardValueMap::FindText(const TCIMValue& value) const {
    const auto find = [this](const std::string& text) {
        const auto found = texts_.find(text);
        return found == texts_.end() ? nullptr : &found->second;
    };
    return value.Visit([&](const auto& content) {
        if constexpr (std::is_same_v<std::decay_t<decltype(content)>, std::string>) {
            return find(content);
        } else {
            return find(value.ToString(10));
        }
    });
}

const std::string* StandardValueMap::Find(const TCIMValue& value) const {
    const std::string* text = nullptr;
    if (isText_) {
        text = FindText(value);
    } else if (const auto key = KeyOf(value)) {
        text = numbers_->Find(*key);
    }
    if (text == nullptr) {
        text = &others_;
    }
    return text->empty() ? nullptr : text;
}

} // namespace NQORVYX20
