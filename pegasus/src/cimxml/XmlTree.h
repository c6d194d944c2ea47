#pragma once

#include "cimxml/ElementText.h"
#include "cimxml/XmlCharacters.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Pegasus::cimxml {

/// An element, an attribute of one, or characters in one. The nodes of a tree stand one behind the other, in the order
/// of the text: each element before its attributes, these before what the element holds.
struct XmlNode {
    enum class Kind : std::uint8_t { Element, Attribute, Text };

    std::string_view name;        // of an element or attribute
    std::string_view value;       // of an attribute or text
    std::uint32_t attributeCount; // of an element
    std::uint32_t extent;         // this node and all that belong to it
    std::uint32_t parentDistance; // how far before this node its parent stands; 0 for the outermost element
    Kind kind;
};

/// An element of an XmlTree; a default-constructed one is none. Valid as long as the tree.
class XmlElement {
  public:
    XmlElement() noexcept = default;
    explicit XmlElement(const XmlNode& node) noexcept : node_(&node) {}

    explicit operator bool() const noexcept { return node_ != nullptr; }
    /// Empty for none.
    std::string_view name() const noexcept { return node_ ? node_->name : std::string_view(); }
    XmlElement parent() const noexcept { return XmlElement(*(node_ - node_->parentDistance)); }

    /// The element's attributes. Behind them begin the elements and texts that it holds.
    const XmlNode* attributes() const noexcept { return node_ + 1; }
    const XmlNode* content() const noexcept { return node_ + 1 + node_->attributeCount; }
    const XmlNode* end() const noexcept { return node_ + node_->extent; }

  private:
    const XmlNode* node_ = nullptr;
};

/// The parsed form of one element. Names and texts point into the ElementText, which must live as long and unchanged.
class XmlTree {
  public:
    /// Parses in place and returns the element. Throws CIMClientXmlException.
    XmlElement parse(ElementText& element);

  private:
    std::vector<XmlNode> nodes_;
};

/// The child elements of an element, for range-based for loops. Text between them throws CIMClientXmlException.
class ChildElements {
  public:
    explicit ChildElements(XmlElement parent) : parent_(parent) {}

    class Iterator {
      public:
        Iterator(const XmlNode* node, const XmlNode* end) : node_(node), end_(end) { skipToElement(); }
        XmlElement operator*() const { return XmlElement(*node_); }
        Iterator& operator++() {
            node_ += node_->extent;
            skipToElement();
            return *this;
        }
        bool operator!=(const Iterator& other) const { return node_ != other.node_; }

      private:
        void skipToElement() {
            while (node_ != end_ && node_->kind != XmlNode::Kind::Element) {
                if (!trimmed(node_->value).empty())
                    throwText(*node_);
                ++node_;
            }
        }

        const XmlNode* node_;
        const XmlNode* end_;
    };

    Iterator begin() const { return Iterator(parent_.content(), parent_.end()); }
    Iterator end() const { return Iterator(parent_.end(), parent_.end()); }

  private:
    [[noreturn]] static void throwText(const XmlNode& text);

    XmlElement parent_;
};

inline bool isNamed(XmlElement element, std::string_view name) { return element.name() == name; }

/// The attributes of an element.
class Attributes {
  public:
    explicit Attributes(XmlElement element) : element_(element) {}

    /// The attribute's value; nothing when it is absent.
    std::optional<std::string_view> find(std::string_view name) const {
        for (const XmlNode* node = element_.attributes(); node != element_.content(); ++node)
            if (node->name == name)
                return node->value;
        return std::nullopt;
    }
    /// The same, and throws CIMClientXmlException when it is absent.
    std::string_view get(std::string_view name) const;
    /// A boolean attribute; `absent` when it is absent.
    bool getBoolean(std::string_view name, bool absent) const;

  private:
    XmlElement element_;
};

/// The only child element; none when there is none. Throws CIMClientXmlException when there are more.
XmlElement onlyChild(XmlElement element);

/// The text of an element that holds nothing else; `buffer` keeps it where it is not in one piece.
std::string_view textOf(XmlElement element, std::string& buffer);

/// Reports an element where it may not stand.
[[noreturn]] void throwUnexpected(XmlElement element);

} // namespace Pegasus::cimxml
