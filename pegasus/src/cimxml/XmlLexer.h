#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Pegasus::cimxml {

/// Finds the tokens of an XML document that arrives in pieces: tags, text, CDATA sections, comments and processing
/// instructions. It knows where they end, not what they mean; names, attributes and references are left to the parser
/// behind it. A document type declaration, and with it every entity declaration, is refused with
/// CIMClientXmlException.
class XmlLexer {
  public:
    enum class Token {
        Incomplete, // all bytes are taken, and the token goes on
        StartTag,
        EmptyTag,
        EndTag,
        Text, // a run of text may come as several tokens, cut anywhere
        CData,
        Other // a comment, a processing instruction, the byte order mark
    };

    /// Takes bytes off the front of `bytes`, up to the end of a token at most.
    Token next(std::string_view& bytes);

    /// The attributes of the last tag.
    std::size_t attributeCount() const noexcept { return attributes_; }
    /// Whether the bytes so far end with a complete token.
    bool isBetweenTokens() const noexcept { return state_ == State::Content; }

  private:
    enum class State { Start, Content, Opening, Tag, Quoted, Comment, CData, Instruction };

    Token resume(std::string_view& bytes);
    Token takeByteOrderMark(std::string_view& bytes);
    Token takeContent(std::string_view& bytes);
    Token takeOpening(std::string_view& bytes);
    Token beginTag(std::string_view& bytes);
    Token takeTag(std::string_view& bytes);
    bool skipToTagEnd(std::string_view& bytes) noexcept;
    void takeQuoted(std::string_view& bytes) noexcept;
    Token takeUntil(std::string_view terminator, Token token, std::string_view& bytes);

    State state_ = State::Start;
    std::string opening_; // what follows '<', where it is not a tag
    std::size_t matched_ = 0;
    std::size_t attributes_ = 0;
    char quote_ = 0;
    char previous_ = 0; // the last byte of the tag so far
    bool endTag_ = false;
};

} // namespace Pegasus::cimxml
