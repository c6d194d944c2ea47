#include "cimxml/ObjectFramer.h"

#include "cimxml/XmlCharacters.h"
#include "cimxml/XmlError.h"

#include <algorithm>
#include <array>
#include <string>

namespace Pegasus::cimxml {

namespace {

constexpr std::array<std::string_view, 5> kEnvelope = {"CIM", "MESSAGE", "SIMPLERSP", "IMETHODRESPONSE",
                                                       "IRETURNVALUE"};
constexpr std::size_t kInMethodResponse = 4;
constexpr std::size_t kInReturnValue = 5;

/// The element's name in the text of a tag.
std::string_view nameIn(std::string_view tag) {
    tag.remove_prefix(std::min(tag.find_first_not_of("</"), tag.size()));
    return tag.substr(0, tag.find_first_of(" \t\r\n/>"));
}

} // namespace

void ObjectFramer::feed(std::string_view bytes) {
    while (!bytes.empty()) {
        if (inElement_)
            takeElement(bytes);
        else
            takeEnvelope(bytes);
    }
}

void ObjectFramer::finish() const {
    if (level_ != 0 || !lexer_.isBetweenTokens())
        throwXmlError({"it ends in the middle of the document"});
    if (nextLevel_ < kInMethodResponse)
        throwXmlError({"it has no ", kEnvelope[nextLevel_]});
}

/// Takes the tokens of an element, up to its end at most.
void ObjectFramer::takeElement(std::string_view& bytes) {
    const std::string_view before = bytes;
    const std::size_t whole = piece_.text().size() + before.size();
    bool complete = false;
    while (!complete && !bytes.empty()) {
        const XmlLexer::Token token = lexer_.next(bytes);
        complete = token != XmlLexer::Token::Incomplete &&
                   piece_.endToken(token, whole - bytes.size(), lexer_.attributeCount());
    }
    piece_.append(before.substr(0, before.size() - bytes.size()));
    if (complete)
        deliverElement();
}

/// Takes one token outside of the elements.
void ObjectFramer::takeEnvelope(std::string_view& bytes) {
    const std::string_view before = bytes;
    const XmlLexer::Token token = lexer_.next(bytes);
    piece_.append(before.substr(0, before.size() - bytes.size()));
    switch (token) {
    case XmlLexer::Token::Incomplete:
        return;
    case XmlLexer::Token::StartTag:
    case XmlLexer::Token::EmptyTag:
        inElement_ = !isEnvelope(nameIn(piece_.text()));
        if (inElement_) {
            if (piece_.endToken(token, piece_.text().size(), lexer_.attributeCount()))
                deliverElement();
            return;
        }
        piece_.endToken(XmlLexer::Token::EmptyTag, piece_.text().size(), lexer_.attributeCount());
        open();
        if (token == XmlLexer::Token::EmptyTag)
            --level_;
        break;
    case XmlLexer::Token::EndTag:
        close();
        break;
    case XmlLexer::Token::Text:
        if (!trimmed(piece_.text()).empty())
            throwXmlError({"there is text between the elements"});
        break;
    case XmlLexer::Token::CData:
        throwXmlError({"there is a CDATA section between the elements"});
    case XmlLexer::Token::Other:
        break;
    }
    piece_.clear();
}

/// Whether an element that begins here is the next one of the envelope, and not an element that it holds.
bool ObjectFramer::isEnvelope(std::string_view name) const {
    if (level_ == nextLevel_ && level_ < kEnvelope.size() && name == kEnvelope[level_])
        return true;
    if (level_ == kInMethodResponse - 1 && name == "METHODRESPONSE")
        throw CIMClientResponseException(
            "the server answers another request: a METHODRESPONSE is for extrinsic methods");
    if (level_ < kInMethodResponse)
        throwXmlError({"the element ", name, " stands where ",
                       level_ == nextLevel_ ? kEnvelope[level_] : std::string_view("nothing more"), " is expected"});
    return false;
}

void ObjectFramer::open() {
    nextLevel_ = ++level_;
    checkCharacters();
    handler_.onEnvelope(piece_);
}

void ObjectFramer::close() {
    const std::string_view name = nameIn(piece_.text());
    if (level_ == 0 || name != kEnvelope[level_ - 1])
        throwXmlError({"the end tag ", name, " has no start tag"});
    --level_;
}

void ObjectFramer::deliverElement() {
    checkCharacters();
    handler_.onElement(piece_, level_ == kInReturnValue);
    piece_.clear();
    inElement_ = false;
}

void ObjectFramer::checkCharacters() {
    if (!isXmlText(piece_.text()))
        throwXmlError({"it is not UTF-8, or holds characters that XML does not allow"});
}

} // namespace Pegasus::cimxml
