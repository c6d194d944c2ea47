#pragma once

#include "xml/XmlLimits.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace Pegasus::xml {

/// The attributes of one start tag. Names and values are views of text that is kept elsewhere.
class Attributes {
  public:
    struct Attribute {
        std::string_view name;
        std::string_view value;
    };

    /// The attribute's value; nothing when it is absent.
    std::optional<std::string_view> find(std::string_view name) const noexcept {
        for (const Attribute& attribute : all_) {
            if (attribute.name == name) {
                return attribute.value;
            }
        }
        return std::nullopt;
    }
    /// The attribute's value. Throws DecodingError when it is absent.
    std::string_view get(std::string_view name) const;
    std::size_t count() const noexcept { return all_.size(); }
    auto begin() const noexcept { return all_.begin(); }
    auto end() const noexcept { return all_.end(); }

    /// Forgets all attributes, for those of `element`.
    void reset(std::string_view element) noexcept {
        element_ = element;
        all_.clear();
    }
    /// Throws DecodingError for a name that another attribute has, and for one attribute too many.
    void add(std::string_view name, std::string_view value) {
        if (count() == kMaxAttributes) {
            throwTooMany();
        }
        if (find(name)) {
            throwTwice(name);
        }
        all_.push_back({name, value});
    }

  private:
    [[noreturn]] void throwTooMany() const;
    [[noreturn]] void throwTwice(std::string_view name) const;

    std::string_view element_;
    std::vector<Attribute> all_;
};

} // namespace Pegasus::xml
