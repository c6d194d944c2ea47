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

/// Whether what stands behind '<' is a tag.
bool beginsTag(char first) noexcept { return startsXmlName(first) || first == '/'; }

bool isPrefix(std::string_view prefix, std::string_view text) noexcept {
    return text.substr(0, prefix.size()) == prefix;
}

} // namespace

XmlLexer::Token XmlLexer::takeByteOrderMark(std::string_view& bytes) {
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
    if (!bytes.empty() && beginsTag(bytes.front()))
        return beginTag(bytes);
    opening_.clear();
    state_ = State::Opening;
    return Token::Incomplete;
}

XmlLexer::Token XmlLexer::takeOpening(std::string_view& bytes) {
    if (opening_.empty() && beginsTag(bytes.front()))
        return beginTag(bytes);
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
    return Token::Incomplete;
}

inline XmlLexer::Token XmlLexer::beginTag(std::string_view& bytes) {
    endTag_ = take(bytes) == '/';
    previous_ = 0;
    attributes_ = 0;
    state_ = State::Tag;
    return takeTag(bytes);
}

inline XmlLexer::Token XmlLexer::takeTag(std::string_view& bytes) {
    while (skipToTagEnd(bytes)) {
        const char c = take(bytes);
        if (c == '>') {
            state_ = State::Content;
            if (endTag_)
                return Token::EndTag;
            return previous_ == '/' ? Token::EmptyTag : Token::StartTag;
        }
        if (c == '<')
            throwXmlError({"a tag holds '<'"});
        quote_ = c;
        previous_ = c;
        ++attributes_;
        state_ = State::Quoted;
        takeQuoted(bytes);
    }
    return Token::Incomplete;
}

/// Takes a tag up to a byte that may end it, or all there is; returns whether there is such a byte.
inline bool XmlLexer::skipToTagEnd(std::string_view& bytes) noexcept {
    const std::size_t length = kEndsTagPart.lengthBefore(bytes);
    if (length != 0)
        previous_ = bytes[length - 1];
    bytes.remove_prefix(length);
    return !bytes.empty();
}

inline void XmlLexer::takeQuoted(std::string_view& bytes) noexcept {
    const std::size_t end = bytes.find(quote_);
    if (end != std::string_view::npos)
        state_ = State::Tag;
    bytes.remove_prefix(std::min(end, bytes.size() - 1) + 1);
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

// Tags and texts, of which answers consist, are mostly there as a whole and need no state to go on from.
XmlLexer::Token XmlLexer::next(std::string_view& bytes) {
    Token token = Token::Incomplete;
    while (token == Token::Incomplete && !bytes.empty())
        token = state_ == State::Content ? takeContent(bytes) : resume(bytes);
    return token;
}

/// Goes on in the middle of a token.
XmlLexer::Token XmlLexer::resume(std::string_view& bytes) {
    switch (state_) {
    case State::Start:
        return takeByteOrderMark(bytes);
    case State::Content:
        return takeContent(bytes);
    case State::Opening:
        return takeOpening(bytes);
    case State::Tag:
        return takeTag(bytes);
    case State::Quoted:
        takeQuoted(bytes);
        return Token::Incomplete;
    case State::Comment:
        return takeUntil("-->", Token::Other, bytes);
    case State::CData:
        return takeUntil("]]>", Token::CData, bytes);
    case State::Instruction:
        return takeUntil("?>", Token::Other, bytes);
    }
    return Token::Incomplete;
}

} // namespace Pegasus::cimxml
