#include "output/MofText.h"

#include "host/TCIMValue.h"
#include "output/DisplayText.h"
#include "text/Utf8.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <utility>

namespace cimhttp {

namespace {

using NQORVYX20::TCIMValue;
using ECIMType = TCIMValue::TCIMType::ECIMType;

constexpr unsigned kSixteenBits = 0xFFFF;
constexpr std::size_t kLineWidth = 100;
constexpr std::size_t kLeastRoom = 20; // for a literal, however deep it is indented

std::string LineBreak(std::size_t indent) { return '\n' + std::string(indent, ' '); }

/// One character between quotes.
std::string Escaped(char32_t character, char quote) {
    switch (character) {
    case '\b':
        return "\\b";
    case '\t':
        return "\\t";
    case '\n':
        return "\\n";
    case '\f':
        return "\\f";
    case '\r':
        return "\\r";
    default:
        break;
    }
    std::string text;
    if (character == static_cast<unsigned char>(quote) || character == '\\') {
        text += '\\';
    }
    if (IsControl(character)) {
        for (const unsigned unit : Utf16Units(character)) {
            char escape[sizeof "\\x0000"];
            std::snprintf(escape, sizeof escape, "\\x%04X", unit & kSixteenBits);
            text += escape;
        }
        return text;
    }
    AppendUtf8(character, text);
    return text;
}

/// Calls `take` with each character of a text, escaped.
template <typename Take>
void ForEachEscaped(std::string_view text, char quote, const Take& take) {
    for (std::size_t i = 0; i < text.size();) {
        const Utf8Character character = CharacterAt(text, i);
        take(Escaped(character.value, quote));
        i += character.size;
    }
}

std::string Quoted(const std::string& text, char quote) {
    std::string literal(1, quote);
    ForEachEscaped(text, quote, [&](const std::string& character) { literal += character; });
    return literal + quote;
}

/// Puts adjacent literals together, each on a line of its own.
class LiteralWriter {
  public:
    LiteralWriter(std::size_t indent, std::size_t room) : indent_(indent), room_(room) {}

    /// Adds an escaped character. Where it does not fit, the line ends after the last blank, or within a word that is
    /// wider than a line.
    void Add(const std::string& character) {
        while (literal_.size() - begin_ + character.size() > room_) {
            BreakLine(word_ > begin_ ? word_ : literal_.size());
        }
        literal_ += character;
        if (character == " ") {
            word_ = literal_.size();
        }
    }

    std::string Finish() { return std::move(literal_) + '"'; }

  private:
    void BreakLine(std::size_t end) {
        literal_.insert(end, '"' + LineBreak(indent_) + '"');
        begin_ = end + indent_ + 3; // the quotes and the line end
    }

    std::size_t indent_;
    std::size_t room_;
    std::string literal_ = "\"";
    std::size_t begin_ = 1; // of the characters on the last line
    std::size_t word_ = 1;  // after its last blank
};

std::string StringLiteral(const std::string& text, std::size_t indent) {
    LiteralWriter writer(indent, indent + kLeastRoom > kLineWidth ? kLeastRoom : kLineWidth - indent - 2);
    ForEachEscaped(text, '"', [&](const std::string& character) { writer.Add(character); });
    return writer.Finish();
}

/// MOF demands a point and a digit after it (realValue).
std::string RealText(const TCIMValue& value) {
    if (!std::isfinite(static_cast<double>(value))) {
        return "NULL";
    }
    std::string text = PlainText(value);
    if (text.find('.') == std::string::npos) {
        text.insert(std::min(text.find('e'), text.size()), ".0");
    }
    return text;
}

std::string ScalarText(const TCIMValue& value, std::size_t indent) {
    switch (value.GetType()) {
    case ECIMType::eCIMString:
        return StringLiteral(PlainText(value), indent);
    case ECIMType::eCIMDateTime:
    case ECIMType::eCIMReference:
        return Quoted(PlainText(value), '"');
    case ECIMType::eCIMChar16:
        return Quoted(PlainText(value), '\'');
    case ECIMType::eCIMReal32:
    case ECIMType::eCIMReal64:
        return RealText(value);
    default:
        return PlainText(value);
    }
}

/// The columns up to the last line's end.
std::size_t ColumnBehind(const std::string& text, std::size_t column) {
    const std::size_t lineEnd = text.rfind('\n');
    return lineEnd == std::string::npos ? column + text.size() : text.size() - lineEnd - 1;
}

} // namespace

std::string MofList(const std::vector<std::string>& items, std::size_t indent) {
    std::string list;
    std::size_t column = indent;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0) {
            const bool fits = column + items[i].size() + 3 < kLineWidth;
            list += fits ? ", " : "," + LineBreak(indent);
            column = fits ? column + 2 : indent;
        }
        list += items[i];
        column = ColumnBehind(items[i], column);
    }
    return list;
}

std::string MofValue(const TCIMValue& value, std::size_t indent) {
    if (value.IsNull()) {
        return "NULL";
    }
    if (!value.IsArray()) {
        return ScalarText(value, indent);
    }
    std::vector<std::string> items;
    for (const TCIMValue& element : static_cast<const std::vector<TCIMValue>&>(value)) {
        items.push_back(MofValue(element, indent + 1));
    }
    return '{' + MofList(items, indent + 1) + '}';
}

} // namespace cimhttp
