#include "text/TerminalText.h"

#include "text/CharacterWidth.h"
#include "text/Utf8.h"

#include <algorithm>
#include <array>

namespace cimhttp {

namespace {

constexpr char32_t kControlPictures = 0x2400;
constexpr char32_t kDelete = 0x7F;
constexpr char32_t kPictureOfDelete = 0x2421;
constexpr std::array<const char*, 3> kSeparators{",;/\\|&", ".:=", "_-@+"}; // in long words, the strongest first

bool IsWhite(char32_t character) { return character == '\n' || character == '\r' || character == '\t'; }

char32_t Shown(char32_t character) {
    if (IsWhite(character)) {
        return ' ';
    }
    if (character < 0x20) {
        return kControlPictures + character;
    }
    if (character == kDelete) {
        return kPictureOfDelete;
    }
    return IsControl(character) ? kReplacementCharacter : character;
}

std::string Shown(std::string_view text, bool keepsLineEnds) {
    std::string shown;
    shown.reserve(text.size());
    while (true) {
        const std::size_t plain = PlainAsciiSize(text);
        shown.append(text, 0, plain);
        text.remove_prefix(plain);
        if (text.empty()) {
            return shown;
        }
        const Utf8Character character = CharacterAt(text, 0);
        const bool isKept = keepsLineEnds && character.value == '\n';
        AppendUtf8(isKept ? character.value : Shown(character.value), shown);
        text.remove_prefix(character.size);
    }
}

/// Where the part of a text ends that begins at `begin` and has `width` columns at most, but one character at least.
std::size_t EndOfFit(std::string_view text, std::size_t begin, std::size_t width) {
    if (text.size() - begin <= width) {
        return text.size(); // no character takes more columns than bytes
    }
    std::size_t used = PlainAsciiSize(text.substr(begin, width));
    std::size_t end = begin + used;
    while (end < text.size()) {
        const Utf8Character character = CharacterAt(text, end);
        used += CharacterWidth(character.value);
        if (used > width && end > begin) {
            break;
        }
        end += character.size;
    }
    return end;
}

/// How much of a word that is too long for a line goes into it: up to and with the last of the strongest separators;
/// all that fits when that would leave the most of the line empty.
std::size_t LengthOfPart(std::string_view fit) {
    for (const char* const separators : kSeparators) {
        const std::size_t separator = fit.find_last_of(separators);
        if (separator != std::string_view::npos && separator >= fit.size() / 3) {
            return separator + 1;
        }
    }
    return fit.size();
}

} // namespace

std::string Printable(std::string_view text) { return Shown(text, false); }

std::string PrintableLines(std::string_view text) { return Shown(text, true); }

std::size_t DisplayWidth(std::string_view text) {
    std::size_t width = 0;
    while (true) {
        const std::size_t plain = PlainAsciiSize(text);
        width += plain;
        text.remove_prefix(plain);
        if (text.empty()) {
            return width;
        }
        const Utf8Character character = CharacterAt(text, 0);
        width += CharacterWidth(character.value);
        text.remove_prefix(character.size);
    }
}

std::string_view LineWrapper::NextLine() {
    const std::size_t begin = offset_;
    const std::size_t fit = EndOfFit(text_, begin, width_);
    if (fit == text_.size()) {
        offset_ = fit;
        return text_.substr(begin);
    }
    // The blank after the last word that fits may stand just outside.
    const std::string_view reach = text_.substr(begin, fit + 1 - begin);
    const std::size_t blank = reach.rfind(' ');
    const bool isBetweenWords = blank != std::string_view::npos && blank > 0;
    const std::size_t length = isBetweenWords ? blank : LengthOfPart(reach.substr(0, fit - begin));
    const std::size_t end = begin + length;
    offset_ = isBetweenWords ? std::min(text_.find_first_not_of(' ', end), text_.size()) : end;
    return reach.substr(0, reach.find_last_not_of(' ', length - 1) + 1);
}

std::vector<std::string> Wrapped(std::string_view text, std::size_t width) {
    LineWrapper wrapper(text, width);
    std::vector<std::string> lines;
    do {
        lines.emplace_back(wrapper.NextLine());
    } while (!wrapper.IsAtEnd());
    return lines;
}

std::string Cut(std::string_view text, std::size_t width) {
    return std::string(text.substr(0, EndOfFit(text, 0, width)));
}

} // namespace cimhttp
