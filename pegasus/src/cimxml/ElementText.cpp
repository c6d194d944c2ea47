#include "cimxml/ElementText.h"

#include "cimxml/Limits.h"
#include "cimxml/XmlError.h"

namespace Pegasus::cimxml {

void ElementText::append(std::string_view bytes) {
    if (bytes.size() > kMaxObjectBytes - text_.size())
        throwXmlError({"one object is larger than ", std::to_string(kMaxObjectBytes >> 20U), " MiB"});
    text_ += bytes;
}

bool ElementText::endToken(XmlLexer::Token token, std::size_t attributeCount) {
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
    if (depth_ > kMaxNesting)
        throwXmlError({"elements are nested deeper than ", std::to_string(kMaxNesting)});
    if (nodes_ > kMaxNodes)
        throwXmlError({"one object has more than ", std::to_string(kMaxNodes), " elements and attributes"});
    return depth_ == 0;
}

void ElementText::clear() {
    text_.clear();
    depth_ = 0;
    nodes_ = 0;
    mixedText_ = false;
}

} // namespace Pegasus::cimxml
