#include "xml/InputText.h"

#include "text/Hexadecimal.h"
#include "text/Utf8.h"
#include "xml/XmlCharacters.h"

#include <algorithm>

namespace Pegasus::xml {

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;
constexpr std::string_view kReplacementText = "\xEF\xBF\xBD";

/// Latin-1 has control characters below, which nobody means by such a byte.
constexpr std::uint32_t kFirstOfLatin1 = 0xA0;

std::string byteText(std::uint32_t byte) {
    std::string text = "0x";
    text::appendHex(static_cast<unsigned char>(byte), text);
    return text;
}

} // namespace

void InputText::append(std::string_view bytes) {
    bytes_.erase(0, begin_);
    checked_ -= begin_;
    begin_ = 0;
    if (repairs_) {
        appendRepaired(bytes, false);
    } else {
        bytes_ += bytes;
        checked_ += lengthOfCharacters(std::string_view(bytes_).substr(checked_));
    }
}

void InputText::end() {
    if (repairs_) {
        appendRepaired({}, true);
    }
}

void InputText::appendRepaired(std::string_view bytes, bool isLast) {
    std::string joined;
    if (!rest_.empty()) {
        joined = rest_.append(bytes);
        bytes = joined;
        rest_.clear();
    }
    while (true) {
        const std::size_t good = lengthOfCharacters(bytes);
        bytes_ += bytes.substr(0, good);
        bytes.remove_prefix(good);
        if (bytes.empty() || (bytes.size() < text::kLongestCharacter && !isLast)) {
            break;
        }
        bytes.remove_prefix(repairFirst(bytes));
    }
    rest_ = bytes;
    checked_ = bytes_.size();
}

/// Appends what takes the place of the first byte or character; returns how many bytes that is.
std::size_t InputText::repairFirst(std::string_view bad) {
    const auto [length, codePoint] = text::firstCharacter(bad);
    const bool isByte = length == 0;
    Repair repair{taken_ + bytes_.size() - begin_, 0, isByte ? static_cast<unsigned char>(bad.front()) : codePoint,
                  isByte};
    const std::size_t before = bytes_.size();
    text::appendUtf8(repair.isByte && repair.code >= kFirstOfLatin1 ? repair.code : kReplacement, bytes_);
    const std::size_t replaced = std::max<std::size_t>(length, 1);
    grown_ += bytes_.size() - before - replaced;
    repair.grown = grown_;
    keep(repair);
    return replaced;
}

/// Of very many, only those that have a tag between them and the one before.
void InputText::keep(const Repair& repair) {
    const std::size_t last = std::max(lastRepair_, taken_);
    lastRepair_ = repair.at;
    if (kept_.size() < kMaxKeptRepairs || bytes_.find('<', last - taken_) != std::string::npos) {
        kept_.push_back(repair);
    } else {
        kept_.back().grown = grown_;
    }
}

void InputText::take(std::size_t length) noexcept {
    begin_ += length;
    taken_ += length;
    const auto firstLeft =
        std::find_if(kept_.begin(), kept_.end(), [&](const Repair& repair) { return repair.at >= taken_; });
    if (firstLeft != kept_.begin()) {
        grownTaken_ = (firstLeft - 1)->grown;
        kept_.erase(kept_.begin(), firstLeft);
    }
}

bool InputText::isReplaced(std::string_view text) noexcept {
    return text.substr(0, kReplacementText.size()) == kReplacementText;
}

bool InputText::takeNulls() noexcept {
    bool found = false;
    if (repairs_) {
        for (; isReplaced(unread()); found = true) {
            take(kReplacementText.size());
        }
        return found;
    }
    for (; begin_ == checked_ && begin_ != bytes_.size() && bytes_[begin_] == '\0'; found = true) {
        checked_ = begin_ + 1;
        take(1);
    }
    checked_ += lengthOfCharacters(std::string_view(bytes_).substr(checked_));
    return found;
}

bool InputText::endsBadly() const noexcept { return bytes_.size() - checked_ >= text::kLongestCharacter; }

std::string InputText::badEnd() const {
    const std::string_view bad = std::string_view(bytes_).substr(checked_);
    const auto [length, codePoint] = text::firstCharacter(bad);
    return textOf(length == 0 ? Repair{0, 0, static_cast<unsigned char>(bad.front()), true}
                              : Repair{0, 0, codePoint, false});
}

std::string InputText::textOf(const Repair& repair) {
    return repair.isByte ? "the byte " + byteText(repair.code) + " is not UTF-8"
                         : "the character " + codePointText(repair.code) + " is not one of XML";
}

std::size_t InputText::offsetOf(std::size_t position) const noexcept {
    const std::size_t at = taken_ + position;
    const auto behind = std::find_if(kept_.begin(), kept_.end(), [&](const Repair& repair) { return repair.at >= at; });
    return at - (behind == kept_.begin() ? grownTaken_ : (behind - 1)->grown);
}

} // namespace Pegasus::xml
