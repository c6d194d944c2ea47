#include "cimxml/XmlTree.h"

#include "cimxml/ByteSet.h"
#include "cimxml/Limits.h"
#include "cimxml/ScalarDecoder.h"
#include "cimxml/XmlError.h"
#include "cimxml/XmlText.h"

namespace Pegasus::cimxml {

namespace {

using Kind = XmlNode::Kind;
using Token = XmlLexer::Token;

constexpr std::string_view kCDataStart = "<![CDATA[";
constexpr std::string_view kCDataEnd = "]]>";
constexpr ByteSet kEndsName([](char c) { return !isInXmlName(c); });
constexpr ByteSet kEndsSpace([](char c) { return !isXmlSpace(c); });

/// Takes white space off the front of a tag; returns whether there was any.
bool skipSpace(std::string_view& tag) noexcept {
    const std::size_t length = kEndsSpace.lengthBefore(tag);
    tag.remove_prefix(length);
    return length != 0;
}

std::string_view takeName(std::string_view& tag) {
    const std::string_view name = tag.substr(0, kEndsName.lengthBefore(tag));
    if (name.empty() || !startsXmlName(name.front()))
        throwXmlError({"a tag is malformed at: ", tag});
    tag.remove_prefix(name.size());
    return name;
}

/// Takes '=' and a value in quotes off the front of a tag; returns what is between the quotes.
std::string_view takeAttributeValue(std::string_view& tag) {
    skipSpace(tag);
    const bool assigned = tag.substr(0, 1) == "=";
    tag.remove_prefix(assigned ? 1 : 0);
    skipSpace(tag);
    const bool quoted = !tag.empty() && (tag.front() == '"' || tag.front() == '\'');
    const std::size_t end = quoted ? tag.find(tag.front(), 1) : std::string_view::npos;
    if (!assigned || end == std::string_view::npos)
        throwXmlError({"an attribute has no value in quotes at: ", tag});
    const std::string_view value = tag.substr(1, end - 1);
    tag.remove_prefix(end + 1);
    return value;
}

/// What a start tag or the tag of an empty element holds.
std::string_view contentOf(std::string_view tag) noexcept {
    tag.remove_suffix(tag[tag.size() - 2] == '/' ? 2 : 1);
    return tag.substr(1);
}

/// Whether what stands between two tokens stands beside an element.
bool isBesideElement(Token before, Token after) noexcept {
    return before == Token::EndTag || before == Token::EmptyTag || after == Token::StartTag || after == Token::EmptyTag;
}

/// Makes the nodes of a tree out of the tokens of an element, one by one.
class TreeBuilder {
  public:
    TreeBuilder(std::string& text, std::vector<XmlNode>& nodes) : text_(text), nodes_(nodes) {}

    void addTextBetween(const ElementText::Part& before, const ElementText::Part& after) {
        const std::string_view text = bytesFrom(before.end, after.begin);
        // White space is a value only where it can be all that an element holds.
        if (!text.empty() && (!isBesideElement(before.token, after.token) || !trimmed(text).empty()))
            addText(text, TextPlace::Content);
    }

    void addPart(const ElementText::Part& part) {
        const std::string_view bytes = bytesFrom(part.begin, part.end);
        switch (part.token) {
        case Token::StartTag:
            openElement(contentOf(bytes));
            break;
        case Token::EmptyTag:
            openElement(contentOf(bytes));
            closeElement();
            break;
        case Token::EndTag:
            closeElement(bytes.substr(2, bytes.size() - 3));
            break;
        case Token::CData:
            addText(bytes.substr(kCDataStart.size(), bytes.size() - kCDataStart.size() - kCDataEnd.size()),
                    TextPlace::CData);
            break;
        case Token::Text:
        case Token::Other:
        case Token::Incomplete:
            break;
        }
    }

  private:
    std::string_view bytesFrom(std::size_t begin, std::size_t end) const noexcept {
        return {text_.data() + begin, end - begin};
    }

    void openElement(std::string_view tag) {
        const std::string_view name = takeName(tag);
        add(Kind::Element, name, {});
        open_ = nodes_.size() - 1;
        while (skipSpace(tag) && !tag.empty())
            addAttribute(tag);
        if (!tag.empty())
            throwXmlError({"the tag of ", name, " is malformed at: ", tag});
    }

    void closeElement() noexcept {
        XmlNode& element = nodes_[open_];
        element.extent = static_cast<std::uint32_t>(nodes_.size() - open_);
        open_ -= element.parentDistance;
    }

    void closeElement(std::string_view tag) {
        const std::string_view name = nodes_[open_].name;
        if (tag.substr(0, name.size()) != name || !trimmed(tag.substr(name.size())).empty())
            throwXmlError({"the element ", name, " ends with another tag: ", tag});
        closeElement();
    }

    void addText(std::string_view raw, TextPlace place) { add(Kind::Text, {}, resolve(raw, place)); }

    void addAttribute(std::string_view& tag) {
        const std::string_view name = takeName(tag);
        XmlNode& element = nodes_[open_];
        if (element.attributeCount == kMaxAttributes)
            throwXmlError({"the element ", element.name, " has too many attributes"});
        if (Attributes(XmlElement(element)).find(name))
            throwXmlError({"the element ", element.name, " has the attribute ", name, " twice"});
        ++element.attributeCount;
        add(Kind::Attribute, name, resolve(takeAttributeValue(tag), TextPlace::AttributeValue));
    }

    std::string_view resolve(std::string_view raw, TextPlace place) {
        return resolveText(text_.data() + (raw.data() - text_.data()), raw.size(), place);
    }

    void add(Kind kind, std::string_view name, std::string_view value) {
        nodes_.push_back({name, value, 0, 1, static_cast<std::uint32_t>(nodes_.size() - open_), kind});
    }

    std::string& text_;
    std::vector<XmlNode>& nodes_;
    std::size_t open_ = 0; // the innermost open element
};

} // namespace

XmlElement XmlTree::parse(ElementText& element) {
    nodes_.clear();
    nodes_.reserve(element.parts().size());
    TreeBuilder builder(element.text(), nodes_);
    ElementText::Part previous = {Token::Other, 0, 0};
    for (const ElementText::Part& part : element.parts()) {
        builder.addTextBetween(previous, part);
        builder.addPart(part);
        previous = part;
    }
    return XmlElement(nodes_.front());
}

void ChildElements::throwText(const XmlNode& text) {
    throwXmlError({"there is text between the elements of ", (&text - text.parentDistance)->name});
}

std::string_view Attributes::get(std::string_view name) const {
    const auto value = find(name);
    if (!value)
        throwXmlError({"the element ", element_.name(), " has no attribute ", name});
    return *value;
}

bool Attributes::getBoolean(std::string_view name, bool absent) const {
    const auto value = find(name);
    return value ? decodeScalar<Boolean>(*value) : absent;
}

XmlElement onlyChild(XmlElement element) {
    XmlElement only;
    for (const auto child : ChildElements(element)) {
        if (only)
            throwUnexpected(child);
        only = child;
    }
    return only;
}

std::string_view textOf(XmlElement element, std::string& buffer) {
    const XmlNode* const first = element.content();
    if (first + 1 == element.end() && first->kind == Kind::Text)
        return first->value;
    buffer.clear();
    for (const XmlNode* node = first; node != element.end(); node += node->extent) {
        if (node->kind == Kind::Element)
            throwUnexpected(XmlElement(*node));
        buffer += node->value;
    }
    return buffer;
}

void throwUnexpected(XmlElement element) {
    throwXmlError({"the element ", element.name(), " does not belong into ", element.parent().name()});
}

} // namespace Pegasus::cimxml
