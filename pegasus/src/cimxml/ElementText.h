#pragma once

#include "cimxml/Limits.h"
#include "cimxml/XmlLexer.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Pegasus::cimxml {

/// The text of one element while it is being collected, token by token, from its start tag to its end tag. Keeps it
/// within the limits of one object. Throws CIMClientXmlException.
class ElementText {
  public:
    /// A token of the element. It begins where the one before it ends.
    struct Part {
        XmlLexer::Token token;
        std::uint32_t end; // in the text
    };

    /// Adds bytes to the text.
    void append(std::string_view bytes);
    /// Says which token comes next, and where in the text it ends, which may still have to be appended up to there.
    /// Returns whether the element is complete with it.
    bool endToken(XmlLexer::Token token, std::size_t end, std::size_t attributeCount) {
        addPart(token, static_cast<std::uint32_t>(end));
        count(token, attributeCount);
        if (depth_ > kMaxNesting || nodes_ > kMaxNodes)
            throwOverLimit();
        return depth_ == 0;
    }
    void clear();

    /// The text, open to be parsed in place.
    std::string& text() noexcept { return text_; }
    const std::vector<Part>& parts() const noexcept { return parts_; }
    bool isEmpty() const noexcept { return parts_.empty(); }

  private:
    /// Tokens that continue a text join it.
    void addPart(XmlLexer::Token token, std::uint32_t end) {
        if (token == XmlLexer::Token::Text && !parts_.empty() && parts_.back().token == token)
            parts_.back().end = end;
        else
            parts_.push_back({token, end});
    }
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
            ++nodes_;
            break;
        case XmlLexer::Token::Text: // there are no more of them than of all others

        case XmlLexer::Token::Incomplete:
            break;
        }
    }
    [[noreturn]] void throwOverLimit() const;

    std::string text_;
    std::vector<Part> parts_;
    std::size_t depth_ = 0;
    std::size_t nodes_ = 0;
};

} // namespace Pegasus::cimxml
