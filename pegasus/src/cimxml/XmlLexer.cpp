#include "cimxml/XmlLexer.h"

#include "cimxml/XmlCharacters.h"
#include "cimxml/XmlError.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <utility>

namespace Pegasus::cimxml {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kCommentOpening = "!--";
constexpr std::string_view kCDataOpening = "![CDATA[";
constexpr std::size_t kLongestReference = 8; // "#1114111"

bool startsName(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
           static_cast<unsigned char>(c) >= 0x80;
}

char take(std::string_view& bytes) noexcept {
    const char c = bytes.front();
    bytes.remove_prefix(1);
    return c;
}

bool isCharacterReference(std::string_view digits, int base) noexcept {
    std::uint32_t codePoint = 0;
    const char* const end = digits.data() + digits.size();
    const auto [last, error] = std::from_chars(digits.data(), end, codePoint, base);
    return error == std::errc() && last == end && isXmlCharacter(codePoint);
}

bool isKnownReference(std::string_view reference) noexcept {
    if (reference.substr(0, 2) == "#x")
        return isCharacterReference(reference.substr(2), 16);
    if (reference.substr(0, 1) == "#")
        return isCharacterReference(reference.substr(1), 10);
    return reference == "lt" || reference == "gt" || reference == "amp" || reference == "quot" || reference == "apos";
}

template <class Stop>
std::size_t lengthUntil(std::string_view bytes, Stop stop) {
    return static_cast<std::size_t>(std::find_if(bytes.begin(), bytes.end(), stop) - bytes.begin());
}

bool isPrefix(std::string_view prefix, std::string_view text) noexcept {
    return text.substr(0, prefix.size()) == prefix;
}

} // namespace

XmlLexer::Token XmlLexer::next(std::string_view& bytes) {
    while (!bytes.empty()) {
        const Token token = step(bytes);
        if (token != Token::Incomplete)
            return token;
    }
    return Token::Incomplete;
}

XmlLexer::Token XmlLexer::step(std::string_view& bytes) {
    switch (state_) {
    case State::Start:
        takeByteOrderMark(bytes);
        break;
    case State::Content:
        return takeContent(bytes);
    case State::Opening:
        takeOpening(bytes);
        break;
    case State::Tag:
        return takeTag(bytes);
    case State::Quoted:
        takeQuoted(bytes);
        break;
    case State::Reference:
        takeReference(bytes);
        break;
    case State::Comment:
        return takeUntil("-->", Token::Other, bytes);
    case State::CData:
        return takeUntil("]]>", Token::CData, bytes);
    case State::Instruction:
        return takeUntil("?>", Token::Other, bytes);
    }
    return Token::Incomplete;
}

void XmlLexer::takeByteOrderMark(std::string_view& bytes) {
    if (bytes.front() == kByteOrderMark[matched_]) {
        take(bytes);
        ++matched_;
    } else if (matched_ != 0) {
        throwXmlError({"it is not UTF-8"});
    } else {
        state_ = State::Content;
    }
    if (matched_ == kByteOrderMark.size())
        state_ = State::Content;
}

XmlLexer::Token XmlLexer::takeContent(std::string_view& bytes) {
    if (bytes.front() == '<') {
        if (std::exchange(inText_, false))
            return Token::Text;
        take(bytes);
        opening_.clear();
        state_ = State::Opening;
        return Token::Incomplete;
    }
    if (!std::exchange(inText_, true))
        blank_ = true;
    const std::string_view text = bytes.substr(0, bytes.find('<'));
    const std::string_view plain = text.substr(0, text.find('&'));
    blank_ = blank_ && trimmed(plain).empty();
    bytes.remove_prefix(plain.size());
    if (bytes.empty()) {
        inText_ = false;
        return Token::Text;
    }
    if (bytes.front() == '&')
        beginReference(bytes);
    return Token::Incomplete;
}

void XmlLexer::takeOpening(std::string_view& bytes) {
    const char c = take(bytes);
    opening_ += c;
    matched_ = 0;
    if (opening_.size() == 1 && c != '!') {
        if (c != '/' && c != '?' && !startsName(c))
            throwXmlError({"'<' is followed by what begins no tag"});
        state_ = c == '?' ? State::Instruction : State::Tag;
        endTag_ = c == '/';
        previous_ = 0;
        attributes_ = 0;
    } else if (opening_ == kCommentOpening) {
        state_ = State::Comment;
    } else if (opening_ == kCDataOpening) {
        state_ = State::CData;
    } else if (!isPrefix(opening_, kCommentOpening) && !isPrefix(opening_, kCDataOpening)) {
        throwXmlError({"it has a document type or another declaration, which is not accepted"});
    }
}

XmlLexer::Token XmlLexer::takeTag(std::string_view& bytes) {
    const std::size_t length = lengthUntil(bytes, [](char c) { return c == '>' || c == '"' || c == '\'' || c == '<'; });
    if (length != 0)
        previous_ = bytes[length - 1];
    bytes.remove_prefix(length);
    if (bytes.empty())
        return Token::Incomplete;
    const char c = take(bytes);
    if (c == '<')
        throwXmlError({"a tag holds '<'"});
    if (c != '>') {
        quote_ = c;
        ++attributes_;
        state_ = State::Quoted;
        return Token::Incomplete;
    }
    state_ = State::Content;
    if (endTag_)
        return Token::EndTag;
    return previous_ == '/' ? Token::EmptyTag : Token::StartTag;
}

void XmlLexer::takeQuoted(std::string_view& bytes) {
    const char quote = quote_;
    bytes.remove_prefix(lengthUntil(bytes, [=](char c) { return c == quote || c == '<' || c == '&'; }));
    if (bytes.empty())
        return;
    if (bytes.front() == '<')
        throwXmlError({"the value of an attribute holds '<'"});
    if (bytes.front() == '&') {
        beginReference(bytes);
        return;
    }
    previous_ = take(bytes);
    state_ = State::Tag;
}

void XmlLexer::beginReference(std::string_view& bytes) {
    take(bytes);
    afterReference_ = state_;
    reference_.clear();
    blank_ = false;
    state_ = State::Reference;
}

void XmlLexer::takeReference(std::string_view& bytes) {
    const char c = take(bytes);
    if (c == ';') {
        if (!isKnownReference(reference_))
            throwXmlError({"it has the unknown reference &", reference_, ";"});
        state_ = afterReference_;
        return;
    }
    reference_ += c;
    if (reference_.size() > kLongestReference)
        throwXmlError({"'&' begins no reference: &", reference_});
}

XmlLexer::Token XmlLexer::takeUntil(std::string_view terminator, Token token, std::string_view& bytes) {
    while (!bytes.empty()) {
        const char c = take(bytes);
        // All but the last byte of each terminator are the same, so a surplus one leaves the match as it is.
        if (c == terminator[matched_])
            ++matched_;
        else if (c != terminator.front())
            matched_ = 0;
        if (matched_ == terminator.size()) {
            state_ = State::Content;
            return token;
        }
    }
    return Token::Incomplete;
}

} // namespace Pegasus::cimxml
