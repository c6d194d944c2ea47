#include "cimxml/XmlLexer.h"

#include "cimxml/ByteSet.h"
#include "cimxml/XmlCharacters.h"
#include "cimxml/XmlError.h"
#include "cimxml/XmlText.h"

#include <algorithm>
#include <utility>

namespace Pegasus::cimxml {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kCommentOpening = "!--";
constexpr std::string_view kCDataOpening = "![CDATA[";
constexpr std::size_t kLongestReference = 8; // "#1114111"

char take(std::string_view& bytes) noexcept {
    const char c = bytes.front();
    bytes.remove_prefix(1);
    return c;
}

constexpr ByteSet kEndsTagPart("<>\"'");
constexpr ByteSet kEndsValuePart("<&\"'");

bool isPrefix(std::string_view prefix, std::string_view text) noexcept {
    return text.substr(0, prefix.size()) == prefix;
}

} // namespace

// The functions of the single states are inline: every byte of an answer goes through them.

inline XmlLexer::Token XmlLexer::takeByteOrderMark(std::string_view& bytes) {
    if (bytes.front() != kByteOrderMark[matched_]) {
        if (matched_ != 0)
            throwXmlError({"it is not UTF-8"});
        state_ = State::Content;
        return Token::Incomplete;
    }
    take(bytes);
    if (++matched_ != kByteOrderMark.size())
        return Token::Incomplete;
    state_ = State::Content;
    return Token::Other;
}

inline XmlLexer::Token XmlLexer::takeContent(std::string_view& bytes) {
    if (bytes.front() == '<') {
        if (std::exchange(inText_, false))
            return Token::Text;
        take(bytes);
        state_ = State::Opening;
        opening_.clear();
        if (!bytes.empty() && (startsXmlName(bytes.front()) || bytes.front() == '/'))
            beginTag(bytes);
        return Token::Incomplete;
    }
    const std::string_view text = bytes.substr(0, bytes.find('<'));
    bytes.remove_prefix(std::min(text.find('&'), text.size()));
    inText_ = !bytes.empty();
    if (!inText_)
        return Token::Text;
    if (bytes.front() == '&')
        beginReference(bytes);
    return Token::Incomplete;
}

/// What follows '<' and is not clearly a tag.
inline void XmlLexer::takeOpening(std::string_view& bytes) {
    const char c = bytes.front();
    if (opening_.empty() && (startsXmlName(c) || c == '/')) {
        beginTag(bytes);
        return;
    }
    opening_ += take(bytes);
    matched_ = 0;
    if (opening_ == "?")
        state_ = State::Instruction;
    else if (opening_ == kCommentOpening)
        state_ = State::Comment;
    else if (opening_ == kCDataOpening)
        state_ = State::CData;
    else if (opening_.front() != '!')
        throwXmlError({"'<' is followed by what begins no tag"});
    else if (!isPrefix(opening_, kCommentOpening) && !isPrefix(opening_, kCDataOpening))
        throwXmlError({"it has a document type or another declaration, which is not accepted"});
}

inline void XmlLexer::beginTag(std::string_view& bytes) {
    endTag_ = take(bytes) == '/';
    previous_ = 0;
    attributes_ = 0;
    state_ = State::Tag;
}

inline XmlLexer::Token XmlLexer::takeTag(std::string_view& bytes) {
    const std::size_t length = kEndsTagPart.lengthBefore(bytes);
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

inline void XmlLexer::takeQuoted(std::string_view& bytes) {
    bytes.remove_prefix(kEndsValuePart.lengthBefore(bytes));
    if (bytes.empty())
        return;
    const char c = bytes.front();
    if (c == '<')
        throwXmlError({"the value of an attribute holds '<'"});
    if (c == '&') {
        beginReference(bytes);
        return;
    }
    previous_ = take(bytes);
    if (c == quote_)
        state_ = State::Tag;
}

inline void XmlLexer::beginReference(std::string_view& bytes) {
    take(bytes);
    afterReference_ = state_;
    reference_.clear();
    state_ = State::Reference;
}

inline void XmlLexer::takeReference(std::string_view& bytes) {
    const char c = take(bytes);
    if (c == ';') {
        if (!codePointOf(reference_))
            throwXmlError({"it has the unknown reference &", reference_, ";"});
        state_ = afterReference_;
        return;
    }
    reference_ += c;
    if (reference_.size() > kLongestReference)
        throwXmlError({"'&' begins no reference: &", reference_});
}

inline XmlLexer::Token XmlLexer::takeUntil(std::string_view terminator, Token token, std::string_view& bytes) {
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

XmlLexer::Token XmlLexer::next(std::string_view& bytes) {
    Token token = Token::Incomplete;
    while (token == Token::Incomplete && !bytes.empty()) {
        switch (state_) {
        case State::Start:
            token = takeByteOrderMark(bytes);
            break;
        case State::Content:
            token = takeContent(bytes);
            break;
        case State::Opening:
            takeOpening(bytes);
            break;
        case State::Tag:
            token = takeTag(bytes);
            break;
        case State::Quoted:
            takeQuoted(bytes);
            break;
        case State::Reference:
            takeReference(bytes);
            break;
        case State::Comment:
            token = takeUntil("-->", Token::Other, bytes);
            break;
        case State::CData:
            token = takeUntil("]]>", Token::CData, bytes);
            break;
        case State::Instruction:
            token = takeUntil("?>", Token::Other, bytes);
            break;
        }
    }
    return token;
}

} // namespace Pegasus::cimxml
