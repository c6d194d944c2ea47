#include "cimxml/XmlLexer.h"

#include "cimxml/ByteSet.h"
#include "cimxml/XmlCharacters.h"
#include "cimxml/XmlError.h"

#include <algorithm>
#include <utility>

namespace Pegasus::cimxml {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kCommentOpening = "!--";
constexpr std::string_view kCDataOpening = "![CDATA[";

char take(std::string_view& bytes) noexcept {
    const char c = bytes.front();
    bytes.remove_prefix(1);
    return c;
}

constexpr ByteSet kEndsTagPart("<>\"'");

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
    if (bytes.front() != '<') {
        bytes.remove_prefix(std::min(bytes.find('<'), bytes.size()));
        return Token::Text;
    }
    take(bytes);
    opening_.clear();
    state_ = State::Opening;
    return bytes.empty() ? Token::Incomplete : takeOpening(bytes);
}

inline XmlLexer::Token XmlLexer::takeOpening(std::string_view& bytes) {
    const char c = bytes.front();
    if (opening_.empty() && (startsXmlName(c) || c == '/'))
        return beginTag(bytes);
    takeDeclarationOpening(bytes);
    return Token::Incomplete;
}

void XmlLexer::takeDeclarationOpening(std::string_view& bytes) {
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

inline XmlLexer::Token XmlLexer::beginTag(std::string_view& bytes) {
    endTag_ = take(bytes) == '/';
    previous_ = 0;
    attributes_ = 0;
    state_ = State::Tag;
    return takeTag(bytes);
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
        previous_ = c;
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
    const std::size_t end = bytes.find(quote_);
    if (end != std::string_view::npos)
        state_ = State::Tag;
    bytes.remove_prefix(std::min(end, bytes.size() - 1) + 1);
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
    std::string_view rest = bytes; // a copy, which no store can change, stays in registers
    Token token = Token::Incomplete;
    while (token == Token::Incomplete && !rest.empty()) {
        switch (state_) {
        case State::Start:
            token = takeByteOrderMark(rest);
            break;
        case State::Content:
            token = takeContent(rest);
            break;
        case State::Opening:
            token = takeOpening(rest);
            break;
        case State::Tag:
            token = takeTag(rest);
            break;
        case State::Quoted:
            takeQuoted(rest);
            break;
        case State::Comment:
            token = takeUntil("-->", Token::Other, rest);
            break;
        case State::CData:
            token = takeUntil("]]>", Token::CData, rest);
            break;
        case State::Instruction:
            token = takeUntil("?>", Token::Other, rest);
            break;
        }
    }
    bytes = rest;
    return token;
}

} // namespace Pegasus::cimxml
