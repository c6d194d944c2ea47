#pragma once

#include "cimxml/Limits.h"
#include "cimxml/XmlLexer.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace Pegasus::cimxml {

/// The text of one element while it is being collected, token by token, from its start tag to its end tag. Keeps it
/// within the limits of one object. Throws CIMClientXmlException.
class ElementText {
  public:
    /// Takes bytes in; they belong to the token that goes on.
    void append(std::string_view bytes);
    /// Says that the bytes so far end with this token. Returns whether the element is complete with it.
    bool endToken(XmlLexer::Token token, std::size_t attributeCount) {
        count(token, attributeCount);
        if (depth_ > kMaxNesting || nodes_ > kMaxNodes)
            throwOverLimit();
        return depth_ == 0;
    }
    void clear();

    /// The text, open to be parsed in place.
    std::string& text() noexcept { return text_; }
    bool isEmpty() const noexcept { return nodes_ == 0; }
    /// Whether white space between two tags can be part of a value: next to CDATA sections and comments.
    bool hasMixedText() const noexcept { return mixedText_; }

  private:
    void count(XmlLexer::Token token, std::size_t attributeCount) noexcept {
        switch (token) {
        case XmlLexer::Token::StartTag:
            ++depth_;
            [[fallthrough]];
        case XmlLexer::Token::EmptyTag:
            nodes_ += 1 + attributeCount;
            break;
        case XmlLexer::Token::EndTag:
            --depth_;
            break;
        case XmlLexer::Token::CData:
        case XmlLexer::Token::Other:
            mixedText_ = true;
            break;
        case XmlLexer::Token::Text:
        case XmlLexer::Token::Incomplete:
            break;
        }
    }
    [[noreturn]] void throwOverLimit() const;

    std::string text_;
    std::size_t depth_ = 0;
    std::size_t nodes_ = 0;
    bool mixedText_ = false;
};

} // namespace Pegasus::cimxml
