#include "wire/XmlWriter.h"

#include "schema/XmlCharacters.h"

#include <utility>

namespace demo {

namespace {

constexpr std::size_t kPortion = std::size_t{16} * 1024;
constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

/// How a character of one byte is written where it cannot stand for itself. White space that a reader would normalise
/// is written as a reference.
std::string_view Escaped(char c) {
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&apos;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    case '\r':
        return "&#13;";
    default:
        return {};
    }
}

} // namespace

XmlWriter::XmlWriter(Output output) : output_(std::move(output)) { buffer_.reserve(2 * kPortion); }

XmlWriter& XmlWriter::Declaration() {
    buffer_ += "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n";
    return *this;
}

XmlWriter& XmlWriter::Start(std::string_view name) {
    if (inStartTag_) {
        buffer_ += ">\n";
    }
    FlushIfLarge();
    (buffer_ += '<') += name;
    open_.emplace_back(name);
    inStartTag_ = true;
    return *this;
}

XmlWriter& XmlWriter::Attribute(std::string_view name, std::string_view value) {
    ((buffer_ += ' ') += name) += "=\"";
    Escape(value);
    buffer_ += '"';
    return *this;
}

XmlWriter& XmlWriter::Text(std::string_view text) {
    CloseStartTag();
    Escape(text);
    return *this;
}

XmlWriter& XmlWriter::End() {
    // An empty element has both tags, too: there are clients whose parsers do not know the short form.
    CloseStartTag();
    ((buffer_ += "</") += open_.back()) += ">\n";
    open_.pop_back();
    return *this;
}

void XmlWriter::EndTo(std::size_t depth) {
    while (open_.size() > depth) {
        End();
    }
}

void XmlWriter::Flush() {
    if (!buffer_.empty()) {
        output_(buffer_);
    }
    passedOn_ += buffer_.size();
    buffer_.clear();
}

void XmlWriter::CloseStartTag() {
    if (inStartTag_) {
        buffer_ += '>';
    }
    inStartTag_ = false;
}

void XmlWriter::Escape(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = XmlCharacterLength(text, i);
        const std::string_view escaped = length == 0 ? kReplacementCharacter : Escaped(text[i]);
        buffer_ += escaped.empty() ? text.substr(i, length) : escaped;
        i += length == 0 ? 1 : length;
    }
}

void XmlWriter::FlushIfLarge() {
    if (buffer_.size() >= kPortion) {
        Flush();
    }
}

} // namespace demo
