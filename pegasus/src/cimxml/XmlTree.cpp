#include "cimxml/XmlTree.h"

#include "cimxml/ScalarDecoder.h"
#include "cimxml/XmlCharacters.h"
#include "cimxml/XmlError.h"

namespace Pegasus::cimxml {

namespace {

bool isElement(pugi::xml_node node) { return node.type() == pugi::node_element; }

} // namespace

pugi::xml_node XmlTree::parse(ElementText& element) {
    // White space is kept where it can be a value: as the only content of an element, and beside CDATA or a comment.
    const unsigned whiteSpace = element.hasMixedText() ? pugi::parse_ws_pcdata : pugi::parse_ws_pcdata_single;
    std::string& text = element.text();
    const auto result =
        document_.load_buffer_inplace(text.data(), text.size(), pugi::parse_default | whiteSpace, pugi::encoding_utf8);
    if (!result)
        throwXmlError({result.description()});
    return document_.document_element();
}

pugi::xml_node ChildElements::elementFrom(pugi::xml_node node) {
    while (node && !isElement(node)) {
        if (!trimmed(node.value()).empty())
            throwXmlError({"there is text between the elements of ", node.parent().name()});
        node = node.next_sibling();
    }
    return node;
}

Attributes::Attributes(pugi::xml_node element) : element_(element) {
    for (auto attribute = element.first_attribute(); attribute; attribute = attribute.next_attribute()) {
        const std::string_view name = attribute.name();
        if (count_ == attributes_.size())
            throwXmlError({"the element ", element.name(), " has too many attributes"});
        if (find(name))
            throwXmlError({"the element ", element.name(), " has the attribute ", name, " twice"});
        attributes_[count_++] = {name, attribute.value()};
    }
}

std::optional<std::string_view> Attributes::find(std::string_view name) const {
    for (std::size_t i = 0; i < count_; ++i)
        if (attributes_[i].name == name)
            return attributes_[i].value;
    return std::nullopt;
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

pugi::xml_node onlyChild(pugi::xml_node element) {
    pugi::xml_node only;
    for (const auto child : ChildElements(element)) {
        if (only)
            throwUnexpected(child);
        only = child;
    }
    return only;
}

std::string_view textOf(pugi::xml_node element, std::string& buffer) {
    const auto first = element.first_child();
    if (!first)
        return {};
    if (!first.next_sibling() && !isElement(first))
        return first.value();
    buffer.clear();
    for (auto part = first; part; part = part.next_sibling()) {
        if (isElement(part))
            throwUnexpected(part);
        buffer += part.value();
    }
    return buffer;
}

void throwUnexpected(pugi::xml_node element) {
    throwXmlError({"the element ", element.name(), " does not belong into ", element.parent().name()});
}

} // namespace Pegasus::cimxml
