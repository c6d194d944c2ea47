#include "TerminalText.h"

#include <algorithm>

#include "CharacterWidth.h"
#include "Utf8.h"

namespace cimhttp {

namespace {

constexpr char32_t kControlPictures = 0x2400;
constexpr char32_t kDelete = 0x7F;
constexpr char32_t kPictureOfDelete = 0x2421;

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

std::string Shown(std::string_view text, bool keeps_line_ends) {
    std::string shown;
    shown.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const Utf8Character character = CharacterAt(text, i);
        const bool is_kept = keeps_line_ends && character.value == '\n';
        AppendUtf8(is_kept ? character.value : Shown(character.value), shown);
        i += character.size;
    }
    return shown;
}

/// Cuts a text into lines from its front.
class Folder {
  public:
    Folder(std::string_view text, std::size_t width) : text_(text), width_(width) {}

    std::string_view NextLine() {
        const std::size_t begin = offset_;
        const std::size_t fit = EndOfFit();
        if (fit == text_.size()) {
            offset_ = fit;
            return text_.substr(begin);
        }
        // The blank behind the last word that fits may stand just outside.
        const std::size_t blank = text_.rfind(' ', fit);
        const bool is_between_words = blank != std::string_view::npos && blank > begin;
        const std::size_t end = is_between_words ? blank : fit;
        offset_ = is_between_words ? std::min(text_.find_first_not_of(' ', blank), text_.size()) : fit;
        const std::size_t last = text_.find_last_not_of(' ', end - 1);
        return text_.substr(begin, last == std::string_view::npos || last < begin ? 0 : last + 1 - begin);
    }

    bool IsAtEnd() const { return offset_ == text_.size(); }

  private:
    std::size_t EndOfFit() const {
        std::size_t width = 0;
        std::size_t end = offset_;
        while (end < text_.size()) {
            const Utf8Character character = CharacterAt(text_, end);
            width += CharacterWidth(character.value);
            if (width > width_ && end > offset_) {
                break;
            }
            end += character.size;
        }
        return end;
    }

    std::string_view text_;
    std::size_t width_;
    std::size_t offset_ = 0;
};

} // namespace

std::string Printable(std::string_view text) { return Shown(text, false); }

std::string PrintableLines(std::string_view text) { return Shown(text, true); }

std::size_t DisplayWidth(std::string_view text) {
    std::size_t width = 0;
    for (std::size_t i = 0; i < text.size();) {
        const Utf8Character character = CharacterAt(text, i);
        width += CharacterWidth(character.value);
        i += character.size;
    }
    return width;
}

std::vector<std::string> Folded(std::string_view text, std::size_t width) {
    Folder folder(text, width);
    std::vector<std::string> lines;
    do {
        lines.emplace_back(folder.NextLine());
    } while (!folder.IsAtEnd());
    return lines;
}

} // namespace cimhttp
