#pragma once

#include "cimxml/Limits.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace Pegasus::cimxml {

/// The attributes of one start tag. Names and values are views of text that is kept elsewhere.
class Attributes {
  public:
    /// The attribute's value; nothing when it is absent.
    std::optional<std::string_view> find(std::string_view name) const noexcept {
        for (std::size_t i = 0; i != count_; ++i)
            if (all_[i].name == name)
                return all_[i].value;
        return std::nullopt;
    }
    /// The same, and throws CIMClientXmlException when it is absent.
    std::string_view get(std::string_view name) const;
    /// A boolean attribute; `absent` when it is absent. Throws CIMClientXmlException for another text.
    bool getBoolean(std::string_view name, bool absent) const;
    std::size_t count() const noexcept { return count_; }

    /// Forgets all attributes, for those of `element`.
    void reset(std::string_view element) noexcept {
        element_ = element;
        count_ = 0;
    }
    /// Throws CIMClientXmlException for an attribute that there is already, and for one too many.
    void add(std::string_view name, std::string_view value) {
        if (count_ == kMaxAttributes)
            throwTooMany();
        if (find(name))
            throwTwice(name);
        all_[count_++] = {name, value};
    }

  private:
    struct Attribute {
        std::string_view name;
        std::string_view value;
    };

    [[noreturn]] void throwTooMany() const;
    [[noreturn]] void throwTwice(std::string_view name) const;

    std::string_view element_;
    std::array<Attribute, kMaxAttributes> all_;
    std::size_t count_ = 0;
};

} // namespace Pegasus::cimxml
