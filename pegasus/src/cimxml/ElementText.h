#pragma once

#include "cimxml/Limits.h"
#include "cimxml/XmlLexer.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Pegasus::cimxml {

/// The text of one element while it is being collected, token by token, from its start tag to its end tag. Keeps it
/// within the limits of one object. Throws CIMClientXmlException.
class ElementText {
  public:
    /// A token of the element. Text is no part; it is what lies between them.
    struct Part {
        XmlLexer::Token token;
        std::uint32_t begin; // in the text
        std::uint32_t end;
    };

    /// Adds bytes to the text.
    void append(std::string_view bytes);
    /// Says which token comes next, and where in the text it ends, which may still have to be appended up to there.
    /// Returns whether the element is complete with it.
    bool endToken(XmlLexer::Token token, std::size_t end, std::size_t attributeCount) {
        const std::size_t begin = std::exchange(end_, end);
        if (token == XmlLexer::Token::Text)
            return false;
        parts_.push_back({token, static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end)});
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
        case XmlLexer::Token::Text:
        case XmlLexer::Token::Incomplete:
            break;
        }
    }
    [[noreturn]] void throwOverLimit() const;

    std::string text_;
    std::vector<Part> parts_;
    std::size_t end_ = 0; // of the last token
    std::size_t depth_ = 0;
    std::size_t nodes_ = 0;
};

} // namespace Pegasus::cimxml
