#pragma once

#include "cimxml/ElementText.h"
#include "cimxml/Limits.h"

#include <pugixml.hpp>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Pegasus::cimxml {

/// The parsed form of one element. Names and texts point into the ElementText, which must live as long and unchanged.
class XmlTree {
  public:
    /// Parses in place and returns the element. Throws CIMClientXmlException.
    pugi::xml_node parse(ElementText& element);

  private:
    pugi::xml_document document_;
};

/// The child elements of an element, for range-based for loops. Text between them throws CIMClientXmlException.
class ChildElements {
  public:
    explicit ChildElements(pugi::xml_node parent) : first_(elementFrom(parent.first_child())) {}

    class Iterator {
      public:
        explicit Iterator(pugi::xml_node node) : node_(node) {}
        pugi::xml_node operator*() const { return node_; }
        Iterator& operator++() {
            node_ = elementFrom(node_.next_sibling());
            return *this;
        }
        bool operator!=(const Iterator& other) const { return node_ != other.node_; }

      private:
        pugi::xml_node node_;
    };

    Iterator begin() const { return Iterator(first_); }
    Iterator end() const { return Iterator(pugi::xml_node()); }

  private:
    static pugi::xml_node elementFrom(pugi::xml_node node);

    pugi::xml_node first_;
};

inline bool isNamed(pugi::xml_node element, std::string_view name) { return element.name() == name; }

/// The attributes of an element, read once. Throws CIMClientXmlException when one is there twice.
class Attributes {
  public:
    explicit Attributes(pugi::xml_node element);

    /// The attribute's value; nothing when it is absent.
    std::optional<std::string_view> find(std::string_view name) const;
    /// The same, and throws CIMClientXmlException when it is absent.
    std::string_view get(std::string_view name) const;
    /// A boolean attribute; `absent` when it is absent.
    bool getBoolean(std::string_view name, bool absent) const;

  private:
    struct Attribute {
        std::string_view name;
        const char* value;
    };

    pugi::xml_node element_;
    std::array<Attribute, kMaxAttributes> attributes_; // the first count_ are set
    std::size_t count_ = 0;
};

/// The only child element; an empty node when there is none. Throws CIMClientXmlException when there are more.
pugi::xml_node onlyChild(pugi::xml_node element);

/// The text of an element that holds nothing else; `buffer` keeps it where it is not in one piece.
std::string_view textOf(pugi::xml_node element, std::string& buffer);

/// Reports an element where it may not stand.
[[noreturn]] void throwUnexpected(pugi::xml_node element);

} // namespace Pegasus::cimxml
